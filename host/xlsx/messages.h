#pragma once
// Error messages about files: one line each, whatever the file holds.

#include <filesystem>
#include <string>
#include <string_view>

namespace zavhost {

/// Text out of a file, fit for a message: valid UTF-8 without control characters, shortened if
/// long.
std::string Printable(std::string_view text);
std::string Printable(std::u16string_view text);
/// A path as the user gave it, in UTF-8.
std::string PrintablePath(const std::filesystem::path& path);

}  // namespace zavhost
