#pragma once
// UTF-8 and UTF-16.

#include <filesystem>
#include <string>
#include <string_view>

namespace zavrel {

/// Whatever is malformed becomes U+FFFD: a surrogate without its partner, and each byte that starts
/// no well-formed sequence.
std::string Utf8FromUtf16(std::u16string_view text);
std::u16string Utf16FromUtf8(std::string_view text);

std::string Utf8FromPath(const std::filesystem::path& path);

}  // namespace zavrel
