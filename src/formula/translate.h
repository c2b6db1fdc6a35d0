#pragma once
// A formula's text from one language of Excel into another, and from one reference style into the
// other.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

#include "formula/language.h"
#include "platform/variant_copies.h"

namespace formula {

/// How a formula is written.
struct Dialect {
  const Language& language;
  ReferenceStyle style = ReferenceStyle::kA1;
};

/// The cell of the formula, from 0. It matters only between reference styles.
struct BaseCell {
  std::int32_t row = 0;
  std::int32_t column = 0;
};

enum class TranslationFailure {
  kTooLong,     // the formula, or its translation: more than kLongestFormula characters
  kUnreadable,  // a character that can begin nothing, or that cannot stand here
  kUnclosed,    // a text, quoted name or bracket without its end
  kUnpaired,    // a parenthesis or brace without its partner
  kOffSheet     // a relative reference that leaves the sheet, seen from the base cell
};

struct TranslationProblem {
  TranslationFailure reason;
  std::size_t position;  // in the formula, from 0, in code units
};

/// Translates a formula, with or without its "=". What changes: the names of functions, separators,
/// the decimal sign, errors, truth values, references between styles, and the letters of R1C1. All
/// else stays as it is: blanks, texts, names, sheets, structured references, and functions that the
/// languages do not know (those of add-ins, and with prefixes such as _xlfn.). A formula is
/// translated as a whole or not at all; its grammar is not checked beyond what reading needs.
std::variant<std::u16string, TranslationProblem> TranslateFormula(std::u16string_view formula,
                                                                  const Dialect& from,
                                                                  const Dialect& to,
                                                                  BaseCell base = {});

}  // namespace formula
