#include "platform/utf.h"

namespace zavrel {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

struct Utf8Character {
  char32_t code = kReplacement;
  std::size_t length = 1;
  bool is_valid = false;
};

/// The first character of a non-empty text, or malformed bytes in its place.
Utf8Character DecodeUtf8(std::string_view text) {
  const auto byte = [text](std::size_t index) -> char32_t {
    return static_cast<unsigned char>(text[index]);
  };
  const char32_t lead = byte(0);
  if (lead < 0x80) return {lead, 1, true};
  if (lead < 0xC2 || lead > 0xF4) return {};
  const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
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
  const auto tail = [&](int shift) {
    out.push_back(static_cast<char>(0x80 | (code >> shift & 0x3F)));
  };
  if (code < 0x80) {
    out.push_back(static_cast<char>(code));
  } else if (code < 0x800) {
    out.push_back(static_cast<char>(0xC0 | code >> 6));
    tail(0);
  } else if (code < 0x10000) {
    out.push_back(static_cast<char>(0xE0 | code >> 12));
    tail(6);
    tail(0);
  } else {
    out.push_back(static_cast<char>(0xF0 | code >> 18));
    tail(12);
    tail(6);
    tail(0);
  }
}

std::string Utf8FromUtf16(std::u16string_view text) {
  std::string out;
  out.reserve(text.size());
  while (!text.empty()) {
    const auto [code, units] = FirstCharacter(text);
    const bool unpaired = code >= 0xD800 && code <= 0xDFFF;
    AppendUtf8(unpaired ? kReplacement : code, out);
    text.remove_prefix(units);
  }
  return out;
}

std::u16string Utf16FromUtf8(std::string_view text) {
  std::u16string out;
  out.reserve(text.size());
  while (!text.empty()) {
    const Utf8Character character = DecodeUtf8(text);
    AppendUtf16(character.code, out);
    text.remove_prefix(character.length);
  }
  return out;
}

bool IsValidUtf8(std::string_view text) {
  while (!text.empty()) {
    const Utf8Character character = DecodeUtf8(text);
    if (!character.is_valid) return false;
    text.remove_prefix(character.length);
  }
  return true;
}

std::string Utf8FromPath(const std::filesystem::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

std::u16string Utf16FromPath(const std::filesystem::path& path) {
#ifdef _WIN32
  return path.u16string();
#else
  return Utf16FromUtf8(path.native());  // any bytes; the library's conversion throws at bad ones
#endif
}

}  // namespace zavrel
