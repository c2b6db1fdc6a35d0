#pragma once
// The version that a binary carries: on Windows in its version resource, elsewhere in a note.

#include <array>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

namespace zavrel {

/// Major, minor, patch and build number.
using FileVersion = std::array<std::uint16_t, 4>;

/// Nothing if the file cannot be read or carries no version. Throws std::bad_alloc.
std::optional<FileVersion> ReadFileVersion(const std::filesystem::path& file);

/// "8.0.1.2".
std::string VersionText(const FileVersion& version);

}  // namespace zavrel
