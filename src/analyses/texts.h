#pragma once
// The texts of the analyses in other languages.

#include <string>
#include <string_view>

namespace zavrel::analyses {

enum class Language { kEnglish, kGerman };

/// A text of the analyses, which is given in English; as it is if there is no translation.
std::string Translated(std::string_view english, Language language);

}  // namespace zavrel::analyses
