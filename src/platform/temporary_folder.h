#pragma once
// The folder for temporary files.

#include <filesystem>

namespace zavrel {

/// The user's temporary folder. If the system names none, or one that does not exist, the user's
/// home (profile) folder, which users can always write to and find; if that is missing too, the
/// current folder.
std::filesystem::path TemporaryFolder();

}  // namespace zavrel
