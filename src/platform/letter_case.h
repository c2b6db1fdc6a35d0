#pragma once
// Letter case of wide text, by Unicode and the same in every locale.

#include <string>
#include <string_view>

namespace zavrel {

/// Each letter in its lower-case form, one for one (the sharp s stays itself, both small forms of
/// the sigma become the one within words); what has none, and an unpaired surrogate, stays as it
/// is.
std::u16string LowerCase(std::u16string_view text);

/// True when the two are the same text but for letter case.
bool EqualIgnoringCase(std::u16string_view a, std::u16string_view b);

}  // namespace zavrel
