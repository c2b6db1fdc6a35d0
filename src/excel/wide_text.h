#pragma once
// Operations on wide text (UTF-16) other than conversion, which platform/utf.h has.

#include <string_view>

#include "platform/utf.h"

namespace zavrel {

/// The first `limit` code units, one less where the cut would split a surrogate pair.
std::u16string_view CutToUnits(std::u16string_view text, std::size_t limit);

}  // namespace zavrel
