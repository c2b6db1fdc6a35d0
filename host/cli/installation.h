#pragma once
// What can be told of an installation without running it: files, their versions, Excel's settings.

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zavhost {

/// "8.0.1.2" from the version resource; nothing when the file has none.
std::optional<std::string> FileVersionText(const std::filesystem::path& file);

/// The languages, by their English names, in which a message library has the text of error boxes.
/// The path is absolute.
std::vector<std::string> MessageLanguages(const std::filesystem::path& file);

/// Where the add-in writes its log.
struct LogPlace {
  std::filesystem::path marker;  // the file that switches the log on
  bool enabled = false;
  std::filesystem::path file;
  std::string written;  // when, in local time; empty without a log
};
LogPlace FindLog();

/// An add-in's entry in Excel's settings.
struct ExcelEntry {
  std::string version;         // of Excel, "16.0"
  std::string name;            // of the value, "OPEN1"; empty for an add-in that is not ticked
  std::string text;            // the value as it stands
  std::filesystem::path file;  // what Excel opens
};
/// The entries of files with this name, in whatever folder.
std::vector<ExcelEntry> ExcelEntries(const std::filesystem::path& file_name);

/// "x64" or "x86", as Office's own installer noted it; empty when it did not.
std::string OfficePlatform();

}  // namespace zavhost
