// Conversion between UTF-8 and UTF-16. What is malformed becomes U+FFFD, one for each longest run
// of bytes that could have begun a character, as the Unicode standard recommends.

#include <cstddef>

#include "host/workbook/value.h"

namespace zavhost {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

bool IsHighSurrogate(char32_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool IsLowSurrogate(char32_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

struct DecodedCharacter {
  char32_t code = kReplacement;
  std::size_t length = 1;
  bool is_valid = false;
};

/// The character at the front of `text` and the bytes it takes.
DecodedCharacter DecodeUtf8(std::string_view text) {
  const auto byte = [text](std::size_t index) -> char32_t {
    return static_cast<unsigned char>(text[index]);
  };
  const char32_t lead = byte(0);
  if (lead < 0x80) return {lead, 1, true};
  const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4) return {};
  // The second byte's bounds rule out overlong forms, surrogates and codes above U+10FFFF.
  const char32_t lowest = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
  const char32_t highest = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
  char32_t code = lead & (0x7Fu >> length);
  for (std::size_t i = 1; i < length; ++i) {
    if (i >= text.size() || byte(i) < (i == 1 ? lowest : 0x80) ||
        byte(i) > (i == 1 ? highest : 0xBF)) {
      return {kReplacement, i, false};
    }
    code = code << 6 | (byte(i) & 0x3F);
  }
  return {code, length, true};
}

}  // namespace

void AppendUtf8(char32_t code, std::string& out) {
  const auto put = [&out](char32_t byte) { out.push_back(static_cast<char>(byte)); };
  if (code < 0x80) {
    put(code);
  } else if (code < 0x800) {
    put(0xC0 | code >> 6);
    put(0x80 | (code & 0x3F));
  } else if (code < 0x10000) {
    put(0xE0 | code >> 12);
    put(0x80 | (code >> 6 & 0x3F));
    put(0x80 | (code & 0x3F));
  } else {
    put(0xF0 | code >> 18);
    put(0x80 | (code >> 12 & 0x3F));
    put(0x80 | (code >> 6 & 0x3F));
    put(0x80 | (code & 0x3F));
  }
}

std::string PrintableUtf8(std::u16string_view text) {
  std::u16string line(text);
  for (char16_t& unit : line) {
    const bool control = unit < 0x20 || (unit >= 0x7F && unit < 0xA0);
    if (control || (unit >= 0x2028 && unit <= 0x202E) || (unit >= 0x2066 && unit <= 0x2069))
      unit = u' ';
  }
  return ToUtf8(line);
}

std::string ToUtf8(std::u16string_view text) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    char32_t code = text[i];
    if (IsHighSurrogate(code) && i + 1 < text.size() && IsLowSurrogate(text[i + 1])) {
      code = 0x10000 + ((code - 0xD800) << 10) + (text[++i] - 0xDC00u);
    } else if (IsHighSurrogate(code) || IsLowSurrogate(code)) {
      code = kReplacement;
    }
    AppendUtf8(code, out);
  }
  return out;
}

std::u16string FromUtf8(std::string_view text) {
  std::u16string out;
  out.reserve(text.size());
  while (!text.empty()) {
    const auto [code, length, is_valid] = DecodeUtf8(text);
    text.remove_prefix(length);
    if (code < 0x10000) {
      out.push_back(static_cast<char16_t>(code));
    } else {
      out.push_back(static_cast<char16_t>(0xD800 + ((code - 0x10000) >> 10)));
      out.push_back(static_cast<char16_t>(0xDC00 + ((code - 0x10000) & 0x3FF)));
    }
  }
  return out;
}

bool IsValidUtf8(std::string_view text) {
  while (!text.empty()) {
    const DecodedCharacter character = DecodeUtf8(text);
    if (!character.is_valid) return false;
    text.remove_prefix(character.length);
  }
  return true;
}

}  // namespace zavhost
