#pragma once
// Names of sheets, defined names and functions are the same in any letter case.

#include <string>
#include <string_view>

namespace zavhost {

/// The text with every letter in one case, letter by letter (Unicode's simple mapping, basic
/// plane).
std::u16string FoldCase(std::u16string_view text);
/// True when the texts differ at most in letter case.
bool EqualIgnoringCase(std::u16string_view a, std::u16string_view b);

/// One code unit in upper case as the system maps it; code units below 128 never get here.
char16_t SystemUpperCase(char16_t unit);

}  // namespace zavhost
