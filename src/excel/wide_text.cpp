#include "excel/wide_text.h"

namespace zavrel {

std::u16string_view CutToUnits(std::u16string_view text, std::size_t limit) {
  if (text.size() <= limit) return text;
  const bool splits_pair =
      limit > 0 && IsHighSurrogate(text[limit - 1]) && IsLowSurrogate(text[limit]);
  return text.substr(0, splits_pair ? limit - 1 : limit);
}

}  // namespace zavrel
