#include "platform/utf.h"

#include <cstdint>

namespace zavrel {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

void AppendUtf8(std::string& out, char32_t code_point) {
  const auto tail = [&](int shift) {
    out.push_back(static_cast<char>(0x80 | ((code_point >> shift) & 0x3F)));
  };
  if (code_point < 0x80) {
    out.push_back(static_cast<char>(code_point));
  } else if (code_point < 0x800) {
    out.push_back(static_cast<char>(0xC0 | (code_point >> 6)));
    tail(0);
  } else if (code_point < 0x10000) {
    out.push_back(static_cast<char>(0xE0 | (code_point >> 12)));
    tail(6);
    tail(0);
  } else {
    out.push_back(static_cast<char>(0xF0 | (code_point >> 18)));
    tail(12);
    tail(6);
    tail(0);
  }
}

void AppendUtf16(std::u16string& out, char32_t code_point) {
  if (code_point < 0x10000) {
    out.push_back(static_cast<char16_t>(code_point));
  } else {
    const char32_t offset = code_point - 0x10000;
    out.push_back(static_cast<char16_t>(0xD800 + (offset >> 10)));
    out.push_back(static_cast<char16_t>(0xDC00 + (offset & 0x3FF)));
  }
}

bool IsHighSurrogate(char16_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool IsLowSurrogate(char16_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

// What the first byte of a sequence announces: its length, and the smallest code point that may be
// written with that length.
struct Lead {
  std::size_t length;
  char32_t bits;
  char32_t smallest;
};

Lead LeadOf(unsigned char byte) {
  if (byte < 0x80) return {1, byte, 0};
  if (byte >= 0xC2 && byte <= 0xDF) return {2, byte & 0x1Fu, 0x80};
  if (byte >= 0xE0 && byte <= 0xEF) return {3, byte & 0x0Fu, 0x800};
  if (byte >= 0xF0 && byte <= 0xF4) return {4, byte & 0x07u, 0x10000};
  return {0, 0, 0};
}

// Reads one code point at the front of text; returns how many bytes it took, 0 when malformed.
std::size_t DecodeUtf8(std::string_view text, char32_t& code_point) {
  const Lead lead = LeadOf(static_cast<unsigned char>(text.front()));
  if (lead.length == 0 || lead.length > text.size()) return 0;
  code_point = lead.bits;
  for (std::size_t i = 1; i < lead.length; ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    if ((byte & 0xC0) != 0x80) return 0;
    code_point = (code_point << 6) | (byte & 0x3Fu);
  }
  const bool surrogate = code_point >= 0xD800 && code_point <= 0xDFFF;
  return code_point >= lead.smallest && code_point <= 0x10FFFF && !surrogate ? lead.length : 0;
}

}  // namespace

std::string Utf8FromUtf16(std::u16string_view text) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char16_t unit = text[i];
    if (IsHighSurrogate(unit) && i + 1 < text.size() && IsLowSurrogate(text[i + 1])) {
      ++i;
      const char32_t high = unit - 0xD800u;
      AppendUtf8(out, 0x10000 + (high << 10) + (text[i] - 0xDC00u));
    } else if (IsHighSurrogate(unit) || IsLowSurrogate(unit)) {
      AppendUtf8(out, kReplacement);
    } else {
      AppendUtf8(out, unit);
    }
  }
  return out;
}

std::u16string Utf16FromUtf8(std::string_view text) {
  std::u16string out;
  out.reserve(text.size());
  while (!text.empty()) {
    char32_t code_point = kReplacement;
    const std::size_t taken = DecodeUtf8(text, code_point);
    AppendUtf16(out, taken == 0 ? kReplacement : code_point);
    text.remove_prefix(taken == 0 ? 1 : taken);
  }
  return out;
}

std::string Utf8FromPath(const std::filesystem::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

}  // namespace zavrel
