#pragma once
// Wide text is UTF-16 (char16_t) throughout; these convert at the edges.

#include <string>
#include <string_view>

#include "platform/utf.h"

namespace zavrel {

/// Malformed input never throws for its content: it becomes U+FFFD.
inline std::string ToUtf8(std::u16string_view text) { return Utf8FromUtf16(text); }
inline std::u16string FromUtf8(std::string_view text) { return Utf16FromUtf8(text); }

/// White space cut off at both ends (Unicode's, the no-break space included).
std::u16string_view TrimWhiteSpace(std::u16string_view text);

/// The first `limit` code units, one less where the cut would split a surrogate pair.
std::u16string_view CutToUnits(std::u16string_view text, std::size_t limit);

}  // namespace zavrel
