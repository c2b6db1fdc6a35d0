#pragma once
// What the commands ask of the system that they run on.

#include <cstdint>
#include <filesystem>
#include <string>

namespace zavhost {

bool StderrIsTerminal();

/// Name and version of the system, and of what stands in for it.
std::string SystemDescription();

/// The English name of a language, or its number where it has none.
std::string LanguageName(std::uint16_t language);

/// The file carries the mark of a download, which makes Excel and Windows refuse it.
bool IsMarkedAsDownloaded(const std::filesystem::path& file);

/// Two spellings of one path, as the system compares them.
bool SamePath(const std::filesystem::path& a, const std::filesystem::path& b);

}  // namespace zavhost
