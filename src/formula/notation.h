#pragma once
// How a language of Excel writes what is not a function's name: separators, the decimal sign,
// errors, truth values and the letters of references in R1C1 style.

#include <array>
#include <cstddef>
#include <string>

#include "formula/error_texts.h"

namespace formula {

/// The longest formula of Excel, in UTF-16 code units.
inline constexpr std::size_t kLongestFormula = 8192;

enum class ReferenceStyle { kA1, kR1C1 };

/// R[1]C[-1] in English, Z(1)S(-1) in German. The letters are capitals.
struct R1C1Letters {
  char16_t row = u'R';
  char16_t column = u'C';
  char16_t open = u'[';
  char16_t close = u']';
};

inline constexpr std::size_t kReferenceError = 3;  // in kErrorTexts
static_assert(kErrorTexts[kReferenceError].text == u"#REF!");

/// The English notation, in which formulas are stored, unless members are set otherwise.
struct Notation {
  char16_t decimal = u'.';
  char16_t list = u',';          // between arguments; also the union
  char16_t array_column = u',';  // between the elements of an array's row
  char16_t array_row = u';';
  R1C1Letters r1c1;
  std::u16string true_text = u"TRUE";
  std::u16string false_text = u"FALSE";
  std::array<std::u16string, kErrorTexts.size()> errors = EnglishErrors();  // as in kErrorTexts

 private:
  static std::array<std::u16string, kErrorTexts.size()> EnglishErrors() {
    std::array<std::u16string, kErrorTexts.size()> texts;
    for (std::size_t i = 0; i < texts.size(); ++i) texts[i] = kErrorTexts[i].text;
    return texts;
  }
};

/// Stays alive until the process ends.
const Notation& EnglishNotation();

}  // namespace formula
