#include "platform/letter_case.h"

#include <utf8proc.h>

#include "platform/utf.h"

namespace zavrel {
namespace {

constexpr char32_t kSigma = 0x03C3;
constexpr char32_t kFinalSigma = 0x03C2;
constexpr char32_t kSharpS = 0x00DF;

char32_t Lower(char32_t code) {
  if (code < 0x80) return code >= U'A' && code <= U'Z' ? code + (U'a' - U'A') : code;
  // A capital sigma does not tell whether it ends a word.
  if (code == kFinalSigma) return kSigma;
  return static_cast<char32_t>(utf8proc_tolower(static_cast<utf8proc_int32_t>(code)));
}

char32_t Upper(char32_t code) {
  if (code < 0x80) return code >= U'a' && code <= U'z' ? code - (U'a' - U'A') : code;
  if (code == kSharpS) return code;
  return static_cast<char32_t>(utf8proc_toupper(static_cast<utf8proc_int32_t>(code)));
}

std::u16string Mapped(std::u16string_view text, char32_t (*map)(char32_t)) {
  std::u16string mapped;
  mapped.reserve(text.size());
  while (!text.empty()) {
    const Utf16Character first = FirstCharacter(text);
    AppendUtf16(map(first.code), mapped);
    text.remove_prefix(first.units);
  }
  return mapped;
}

}  // namespace

std::u16string LowerCase(std::u16string_view text) { return Mapped(text, Lower); }
std::u16string UpperCase(std::u16string_view text) { return Mapped(text, Upper); }

bool IsLetter(char32_t code) {
  switch (utf8proc_category(static_cast<utf8proc_int32_t>(code))) {
    case UTF8PROC_CATEGORY_LU:
    case UTF8PROC_CATEGORY_LL:
    case UTF8PROC_CATEGORY_LT:
    case UTF8PROC_CATEGORY_LM:
    case UTF8PROC_CATEGORY_LO:
      return true;
    default:
      return false;
  }
}

int CompareIgnoringCase(std::u16string_view a, std::u16string_view b) {
  while (!a.empty() && !b.empty()) {
    const Utf16Character of_a = FirstCharacter(a);
    const Utf16Character of_b = FirstCharacter(b);
    if (of_a.code != of_b.code) {
      const char32_t lower_a = Lower(of_a.code);
      const char32_t lower_b = Lower(of_b.code);
      if (lower_a != lower_b) return lower_a < lower_b ? -1 : 1;
    }
    a.remove_prefix(of_a.units);
    b.remove_prefix(of_b.units);
  }
  return int{b.empty()} - int{a.empty()};
}

bool EqualIgnoringCase(std::u16string_view a, std::u16string_view b) {
  // A character and its lower-case form have the same number of units.
  if (a.size() != b.size()) return false;
  // Names and keys in a list often begin alike.
  for (std::size_t i = a.size(); i > 0; --i) {
    const char16_t of_a = a[i - 1];
    const char16_t of_b = b[i - 1];
    if (of_a == of_b) continue;
    if (of_a >= 0x80 || of_b >= 0x80) return CompareIgnoringCase(a, b) == 0;
    if (Lower(of_a) != Lower(of_b)) return false;
  }
  return true;
}

}  // namespace zavrel
