#pragma once
// The properties of an installation that do not need to run it: files, their versions, the log.

#include <filesystem>
#include <optional>
#include <string>
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

}  // namespace zavhost
