#pragma once
// The properties of an installation that do not need to run it: files, their versions, Excel's
// settings.

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zavhost {

/// "8.0.1.2" from the version resource; nothing if the file has none.
std::optional<std::string> FileVersionText(const std::filesystem::path& file);

/// The English names of the languages in which a message library has the texts of error boxes. The
/// path must be absolute.
std::vector<std::string> MessageLanguages(const std::filesystem::path& file);

/// The location of the add-in's log.
struct LogPlace {
  std::filesystem::path marker;  // the file that switches the log on
  bool enabled = false;
  std::filesystem::path file;
  std::string written;  // the local time; empty without a log
};
LogPlace FindLog();

/// An add-in's entry in Excel's settings.
struct ExcelEntry {
  std::string version;         // of Excel, "16.0"
  std::string name;            // of the value, "OPEN1"; empty for an add-in that is not ticked
  std::string text;            // the unchanged value
  std::filesystem::path file;  // the file that Excel opens
};
/// The entries of files with this name in any folder.
std::vector<ExcelEntry> ExcelEntries(const std::filesystem::path& file_name);

/// "x64" or "x86", as noted by Office's installer; empty if it noted neither.
std::string OfficePlatform();

}  // namespace zavhost
