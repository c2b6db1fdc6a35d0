#pragma once
// Excel's settings, and the programs that have loaded the add-in.

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace zavhost {

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

/// A running program and the copies of a library that it has loaded, in the order of loading.
struct LoadingProgram {
  std::string name;  // "EXCEL.EXE"
  std::uint32_t process = 0;
  std::vector<std::filesystem::path> copies;
};
/// The programs, except this one, that have loaded a library with this file name, as far as this
/// user may look into them.
std::vector<LoadingProgram> ProgramsWith(const std::filesystem::path& file_name);

/// The folder of this user from which Excel opens whatever it finds (XLSTART); empty if there is
/// none.
std::filesystem::path ExcelStartFolder();

/// Whether the system regards both as the same path.
bool SamePath(const std::filesystem::path& a, const std::filesystem::path& b);

}  // namespace zavhost
