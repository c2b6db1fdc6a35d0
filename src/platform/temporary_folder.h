#pragma once
// Where temporary files go.

#include <filesystem>

namespace zavrel {

/// The user's temporary folder. When the system names none, or names one that does not exist, it is
/// the user's home (profile) folder, which the user can always write to and find; when that is
/// missing too, the current folder.
std::filesystem::path TemporaryFolder();

}  // namespace zavrel
