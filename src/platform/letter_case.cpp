#include "platform/letter_case.h"

#include <utf8proc.h>

#include <algorithm>

namespace zavrel {
namespace {

struct CodePoint {
  char32_t value;
  std::size_t units;
};

/// The first code point of a text that is not empty; an unpaired surrogate counts as one.
CodePoint FirstOf(std::u16string_view text) {
  const char16_t high = text[0];
  if ((high & 0xFC00) == 0xD800 && text.size() > 1 && (text[1] & 0xFC00) == 0xDC00) {
    return {0x10000 + (char32_t{high & 0x3FFu} << 10 | char32_t{text[1] & 0x3FFu}), 2};
  }
  return {high, 1};
}

constexpr char32_t kSigma = 0x03C3;
constexpr char32_t kFinalSigma = 0x03C2;

char32_t Lower(char32_t code_point) {
  if (code_point < 0x80) {
    return code_point >= U'A' && code_point <= U'Z' ? code_point + (U'a' - U'A') : code_point;
  }
  // Capitals do not tell where a word ends.
  if (code_point == kFinalSigma) return kSigma;
  return static_cast<char32_t>(utf8proc_tolower(static_cast<utf8proc_int32_t>(code_point)));
}

void Append(std::u16string& text, char32_t code_point) {
  if (code_point < 0x10000) {
    text += static_cast<char16_t>(code_point);
    return;
  }
  text += static_cast<char16_t>(0xD7C0 + (code_point >> 10));
  text += static_cast<char16_t>(0xDC00 | (code_point & 0x3FF));
}

}  // namespace

std::u16string LowerCase(std::u16string_view text) {
  std::u16string lower;
  lower.reserve(text.size());
  while (!text.empty()) {
    const CodePoint first = FirstOf(text);
    Append(lower, Lower(first.value));
    text.remove_prefix(first.units);
  }
  return lower;
}

bool EqualIgnoringCase(std::u16string_view a, std::u16string_view b) {
  while (!a.empty() && !b.empty()) {
    const CodePoint of_a = FirstOf(a);
    const CodePoint of_b = FirstOf(b);
    if (of_a.value != of_b.value && Lower(of_a.value) != Lower(of_b.value)) return false;
    a.remove_prefix(of_a.units);
    b.remove_prefix(of_b.units);
  }
  return a.empty() && b.empty();
}

}  // namespace zavrel
