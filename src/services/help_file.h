#pragma once
// The part of help_topic.cpp that depends on the system.

#include <filesystem>

namespace zavrel::services {

/// Whether the system can show the compiled help in this file: the file exists, is on this
/// machine's own disks and was not marked as coming from elsewhere. False on systems without
/// compiled help.
bool CanShowCompiledHelp(const std::filesystem::path& file);

}  // namespace zavrel::services
