#pragma once
// The parts of the commands that depend on the system.

#include <cstdint>
#include <filesystem>
#include <string>

namespace zavhost {

bool StderrIsTerminal();

/// Name and version of the system, and of an emulation of it.
std::string SystemDescription();

/// The English name of a language, or its number if it has none.
std::string LanguageName(std::uint16_t language);

/// Whether the file has the mark of a download, which makes Excel and Windows refuse it.
bool IsMarkedAsDownloaded(const std::filesystem::path& file);

}  // namespace zavhost
