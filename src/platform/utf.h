#pragma once
// UTF-8 and UTF-16.

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>

namespace zavrel {

constexpr bool IsHighSurrogate(char16_t unit) { return (unit & 0xFC00) == 0xD800; }
constexpr bool IsLowSurrogate(char16_t unit) { return (unit & 0xFC00) == 0xDC00; }

struct Utf16Character {
  char32_t code;
  std::size_t units;
};

/// The first character of a non-empty text; an unpaired surrogate counts as one.
constexpr Utf16Character FirstCharacter(std::u16string_view text) {
  if (IsHighSurrogate(text[0]) && text.size() > 1 && IsLowSurrogate(text[1]))
    return {0x10000 + (char32_t{text[0] & 0x3FFu} << 10 | char32_t{text[1] & 0x3FFu}), 2};
  return {text[0], 1};
}

/// Appends one character up to U+10FFFF; for UTF-8, it must not be a surrogate.
void AppendUtf8(char32_t code, std::string& out);
inline void AppendUtf16(char32_t code, std::u16string& out) {
  if (code >= 0x10000) {
    out.push_back(static_cast<char16_t>(0xD7C0 + (code >> 10)));
    code = 0xDC00 | (code & 0x3FF);
  }
  out.push_back(static_cast<char16_t>(code));
}

/// Malformed input becomes U+FFFD: each unpaired surrogate, and each longest run of bytes that
/// could have begun a character, as the Unicode standard recommends.
std::string Utf8FromUtf16(std::u16string_view text);
std::u16string Utf16FromUtf8(std::string_view text);
bool IsValidUtf8(std::string_view text);

std::string Utf8FromPath(const std::filesystem::path& path);
std::u16string Utf16FromPath(const std::filesystem::path& path);

}  // namespace zavrel
