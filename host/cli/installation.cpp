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
#include "platform/registry.h"
#include "platform/string_resource.h"
#include "platform/temporary_folder.h"

namespace zavhost {
namespace {

using zavrel::RegistryHive;
using zavrel::RegistryKey;
using zavrel::RegistryText;

std::vector<RegistryText> TextsOfUser(const std::u16string& path) {
  const auto key = RegistryKey::Open(RegistryHive::kPerUser, path);
  return key ? key->ReadTexts() : std::vector<RegistryText>();
}

/// The file in a value such as `/R "C:\Folder\File.xll"`: the quoted part, or the whole value.
std::filesystem::path FileOfOpenValue(const std::u16string& text) {
  const std::size_t first = text.find(u'"');
  if (first == std::u16string::npos) return text;
  return text.substr(first + 1, text.find(u'"', first + 1) - first - 1);
}

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

std::vector<ExcelEntry> ExcelEntries(const std::filesystem::path& file_name) {
  std::vector<ExcelEntry> entries;
  for (const std::u16string version : {u"14.0", u"15.0", u"16.0"}) {
    const std::u16string excel = u"Software\\Microsoft\\Office\\" + version + u"\\Excel\\";
    for (const auto& [name, text] : TextsOfUser(excel + u"Options")) {
      const std::filesystem::path file = FileOfOpenValue(text);
      if (name.starts_with(u"OPEN") && SamePath(file.filename(), file_name))
        entries.push_back({Utf8FromUtf16(version), Utf8FromUtf16(name), Utf8FromUtf16(text), file});
    }
    for (const auto& [name, text] : TextsOfUser(excel + u"Add-in Manager")) {
      const std::filesystem::path file = name;
      if (SamePath(file.filename(), file_name))
        entries.push_back({Utf8FromUtf16(version), "", Utf8FromUtf16(name), file});
    }
  }
  return entries;
}

std::string OfficePlatform() {
  const auto key = RegistryKey::Open(RegistryHive::kMachineWide,
                                     u"Software\\Microsoft\\Office\\ClickToRun\\Configuration");
  return Utf8FromUtf16((key ? key->ReadText(u"Platform") : std::nullopt).value_or(u""));
}

}  // namespace zavhost
