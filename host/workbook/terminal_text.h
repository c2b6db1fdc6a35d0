#pragma once
// What texts from a workbook could do to a terminal.

#include <string>
#include <string_view>

namespace zavhost {

/// Control characters, line separators, marks for the direction of writing.
constexpr bool ActsOnTerminal(char16_t unit) {
  return unit < 0x20 || (unit >= 0x7F && unit < 0xA0) || unit == 0x061C || unit == 0x200E ||
         unit == 0x200F || (unit >= 0x2028 && unit <= 0x202E) || (unit >= 0x2066 && unit <= 0x2069);
}

/// The text with "\u009B" and so on in the place of each such character but tabs and line ends.
/// JSON reads that as the character itself.
std::string EscapedUtf8(std::string_view text);

}  // namespace zavhost
