#pragma once

#include <string_view>

namespace zavrel {

/// The Unicode property White_Space, which includes the no-break space; all these characters are
/// single units.
constexpr bool IsWhiteSpace(char16_t unit) {
  return (unit >= 0x0009 && unit <= 0x000D) || unit == 0x0020 || unit == 0x0085 || unit == 0x00A0 ||
         unit == 0x1680 || (unit >= 0x2000 && unit <= 0x200A) || unit == 0x2028 || unit == 0x2029 ||
         unit == 0x202F || unit == 0x205F || unit == 0x3000;
}

/// The text without white space at its ends.
constexpr std::u16string_view Trimmed(std::u16string_view text) {
  while (!text.empty() && IsWhiteSpace(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsWhiteSpace(text.back())) text.remove_suffix(1);
  return text;
}

}  // namespace zavrel
