#include "excel/wide_text.h"

namespace zavrel {
namespace {

// Every character that Unicode gives the property White_Space; all lie in the basic plane.
constexpr bool IsWhiteSpace(char16_t unit) {
  return (unit >= 0x0009 && unit <= 0x000D) || unit == 0x0020 || unit == 0x0085 || unit == 0x00A0 ||
         unit == 0x1680 || (unit >= 0x2000 && unit <= 0x200A) || unit == 0x2028 || unit == 0x2029 ||
         unit == 0x202F || unit == 0x205F || unit == 0x3000;
}

constexpr bool IsHighSurrogate(char16_t unit) { return (unit & 0xFC00) == 0xD800; }
constexpr bool IsLowSurrogate(char16_t unit) { return (unit & 0xFC00) == 0xDC00; }

}  // namespace

std::u16string_view TrimWhiteSpace(std::u16string_view text) {
  while (!text.empty() && IsWhiteSpace(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsWhiteSpace(text.back())) text.remove_suffix(1);
  return text;
}

std::u16string_view CutToUnits(std::u16string_view text, std::size_t limit) {
  if (text.size() <= limit) return text;
  const bool splits_pair =
      limit > 0 && IsHighSurrogate(text[limit - 1]) && IsLowSurrogate(text[limit]);
  return text.substr(0, splits_pair ? limit - 1 : limit);
}

}  // namespace zavrel
