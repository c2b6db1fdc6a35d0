#pragma once
// Letter case of wide text by the rules of Unicode, independent of the locale.

#include <string>
#include <string_view>

namespace zavrel {

/// Replaces each letter by its lower-case form, one for one: the sharp s stays unchanged, and both
/// small forms of the sigma become the form used inside words. Everything else, including unpaired
/// surrogates, stays as it is.
std::u16string LowerCase(std::u16string_view text);

/// Negative, zero or positive by the first code points that differ in lower case.
int CompareIgnoringCase(std::u16string_view a, std::u16string_view b);

/// Replaces each letter by its upper-case form, one for one: the sharp s stays unchanged.
std::u16string UpperCase(std::u16string_view text);

/// True for letters of any script.
bool IsLetter(char32_t code);

/// True if the two texts differ at most in letter case.
bool EqualIgnoringCase(std::u16string_view a, std::u16string_view b);

}  // namespace zavrel
