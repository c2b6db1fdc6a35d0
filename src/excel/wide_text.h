#pragma once
// Wide text is UTF-16 (char16_t) throughout; these convert at the edges.

#include <string>
#include <string_view>

namespace zavrel {

/// Malformed input never throws for its content: it becomes U+FFFD.
std::string ToUtf8(std::u16string_view text);
std::u16string FromUtf8(std::string_view text);

/// White space cut off at both ends (Unicode's, the no-break space included).
std::u16string_view TrimWhiteSpace(std::u16string_view text);

}  // namespace zavrel
