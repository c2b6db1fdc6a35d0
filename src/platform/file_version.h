#pragma once
// The version that a binary carries in its version resource.

#include <array>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

namespace zavrel {

/// Major, minor, patch and build number.
using FileVersion = std::array<std::uint16_t, 4>;

/// Nothing if the file cannot be read or has no version resource, and on systems whose binaries
/// have no such resources.
std::optional<FileVersion> ReadFileVersion(const std::filesystem::path& file);

/// "8.0.1.2".
std::string VersionText(const FileVersion& version);

}  // namespace zavrel
