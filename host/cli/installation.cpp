#include "host/cli/installation.h"

#include <fmt/format.h>

#include <algorithm>
#include <chrono>

#include "contracts/log_files.h"
#include "contracts/message_ids.h"
#include "host/cli/system.h"
#include "host/workbook/text.h"
#include "platform/clock.h"
#include "platform/file_version.h"
#include "platform/library_identity.h"
#include "platform/string_resource.h"
#include "platform/temporary_folder.h"

namespace zavhost {
namespace {

/// "2026-03-01 08:30"; empty if there is no such file.
std::string LastWritten(const std::filesystem::path& file) {
  std::error_code error;
  const auto written = std::filesystem::last_write_time(file, error);
  if (error) return "";
  using std::chrono::system_clock;
  const auto time = std::chrono::time_point_cast<system_clock::duration>(
      std::chrono::file_clock::to_sys(written));
  const auto local = zavrel::LocalTime(system_clock::to_time_t(time));
  if (!local) return "";
  return fmt::format("{:04}-{:02}-{:02} {:02}:{:02}", local->tm_year + 1900, local->tm_mon + 1,
                     local->tm_mday, local->tm_hour, local->tm_min);
}

}  // namespace

std::optional<std::string> FileVersionText(const std::filesystem::path& file) {
  const auto version = zavrel::ReadFileVersion(file);
  return version ? std::optional(zavrel::VersionText(*version)) : std::nullopt;
}

std::vector<std::string> MessageLanguages(const std::filesystem::path& file) {
  std::vector<std::string> names;
  if (const auto library = zavrel::StringResources::Load(file)) {
    for (const std::uint16_t language : library->LanguagesOf(zavrel::messages::kMessageTitle))
      names.push_back(LanguageName(language));
  }
  std::sort(names.begin(), names.end());
  return names;
}

LogPlace FindLog() {
  const std::filesystem::path folder = zavrel::TemporaryFolder();
  const std::filesystem::path file =
      zavrel::LogFileIn(folder, Utf16FromUtf8(zavrel::SessionName(u"ZavrelFuncs")));
  return {folder / zavrel::kLogMarker, zavrel::LogIsOn(folder), file, LastWritten(file)};
}

}  // namespace zavhost
