#pragma once
// The characters of formulas' names.

#include <string>
#include <string_view>

namespace zavcalc {

inline bool IsDigit(char16_t c) { return c >= u'0' && c <= u'9'; }
inline bool IsLetter(char16_t c) { return (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z'); }
inline bool IsNamePart(char16_t c) {
  return IsLetter(c) || IsDigit(c) || c == u'_' || c == u'.' || c == u'\\' || c > 127;
}

/// Calc writes array formulas in braces.
inline bool IsArrayFormula(std::u16string_view text) {
  return text.starts_with(u'{') && text.ends_with(u'}');
}
inline std::u16string_view WithoutBraces(std::u16string_view text) {
  return IsArrayFormula(text) ? text.substr(1, text.size() - 2) : text;
}

/// Of ASCII letters; others stay.
inline std::u16string UpperCase(std::u16string_view text) {
  std::u16string upper(text);
  for (char16_t& c : upper) {
    if (c >= u'a' && c <= u'z') c = static_cast<char16_t>(c - u'a' + u'A');
  }
  return upper;
}

}  // namespace zavcalc
