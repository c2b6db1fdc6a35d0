#pragma once
// The parts of the commands that depend on the system.

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace zavhost {

bool StderrIsTerminal();

/// Name and version of the system, and of an emulation of it.
std::string SystemDescription();

/// The English name of a language, or its number if it has none.
std::string LanguageName(std::uint16_t language);

/// Whether the file has the mark of a download, which makes Excel and Windows refuse it.
bool IsMarkedAsDownloaded(const std::filesystem::path& file);

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
