#pragma once
// The folder for temporary files.

#include <filesystem>

namespace zavrel {

/// The user's temporary folder. If the system names none, or one that does not exist, the user's
/// home (profile) folder, which users can always write to and find; empty if that is missing too.
/// Never the current folder, which may be that of a stranger's workbook. The path has no separator
/// at its end: what libstdc++ 12 appends to such a one without memory destroys what is not there.
std::filesystem::path TemporaryFolder();

/// Creates an empty file that only the user can read. False if anything has the name, a link among
/// it, or if the file cannot be created.
bool CreateNewFile(const std::filesystem::path& path) noexcept;

}  // namespace zavrel
