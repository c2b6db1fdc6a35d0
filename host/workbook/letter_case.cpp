#include "host/workbook/letter_case.h"

#include <algorithm>

namespace zavhost {
namespace {

char16_t UpperCase(char16_t unit) {
  if (unit < 128) return unit >= u'a' && unit <= u'z' ? static_cast<char16_t>(unit - 32) : unit;
  return SystemUpperCase(unit);
}

}  // namespace

std::u16string FoldCase(std::u16string_view text) {
  std::u16string folded(text);
  std::transform(folded.begin(), folded.end(), folded.begin(), UpperCase);
  return folded;
}

bool EqualIgnoringCase(std::u16string_view a, std::u16string_view b) {
  return a.size() == b.size() &&
         std::equal(a.begin(), a.end(), b.begin(),
                    [](char16_t x, char16_t y) { return x == y || UpperCase(x) == UpperCase(y); });
}

}  // namespace zavhost
