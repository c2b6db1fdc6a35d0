#pragma once
// Translation of formulas for macros.

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

namespace zavrel {

/// A macro's constants for reference styles.
inline constexpr std::int32_t kStyleA1 = 1;        // xlA1
inline constexpr std::int32_t kStyleR1C1 = -4150;  // xlR1C1

/// The formula, written in the language with the code `from`, in the language `to`; the reference
/// style is that of both. Tables of languages are looked for in the folder. Throws
/// VekParameterError, or VekErrorReadingFile for a table that cannot be used.
std::u16string TranslatedFormula(std::string_view place, std::u16string_view formula,
                                 std::u16string_view from, std::u16string_view to,
                                 std::int32_t style, const std::filesystem::path& folder);

}  // namespace zavrel
