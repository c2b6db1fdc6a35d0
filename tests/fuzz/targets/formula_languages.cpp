// Formulas from one language of Excel into another, with any table of names: within the bounds, and
// the same twice.
#include "formula/language.h"

#include "formula/language_table.h"
#include "formula/translate.h"
#include "fuzz/bytes.h"
#include "fuzz/target.h"
#include "platform/utf.h"

namespace zavrel::tests {
namespace {

using formula::Dialect;
using formula::Language;
using formula::ReferenceStyle;

/// English, German, or what a table says.
Language AnyLanguage(Bytes& bytes) {
  switch (bytes.Below(3)) {
    case 0:
      return {};
    case 1:
      return *formula::FindLanguage("de", {}).language;
    default: {
      const auto table = formula::ReadLanguageTable(bytes.Text(255));
      const Language* const read = std::get_if<Language>(&table);
      return read == nullptr ? Language() : *read;
    }
  }
}

ReferenceStyle AnyStyle(Bytes& bytes) {
  return bytes.Below(2) == 0 ? ReferenceStyle::kA1 : ReferenceStyle::kR1C1;
}

void Translate(std::span<const std::uint8_t> input) {
  Bytes bytes(input);
  const Language first = AnyLanguage(bytes), second = AnyLanguage(bytes);
  const Dialect from{first, AnyStyle(bytes)}, to{second, AnyStyle(bytes)};
  const formula::BaseCell base{bytes.Take<std::uint16_t>(),
                               static_cast<std::int32_t>(bytes.Below(99))};
  const std::u16string text = Utf16FromUtf8(bytes.Rest());
  const auto translated = formula::TranslateFormula(text, from, to, base);
  if (const auto* problem = std::get_if<formula::TranslationProblem>(&translated)) {
    Require(problem->position <= text.size(), "a problem beyond the formula");
    return;
  }
  const auto& result = std::get<std::u16string>(translated);
  Require(result.size() <= formula::kLongestFormula, "a translation that is too long");
  const auto again = formula::TranslateFormula(text, from, to, base);
  Require(std::get<std::u16string>(again) == result, "another translation of the same formula");
}

const FuzzTarget target("formula_languages", Translate);

}  // namespace
}  // namespace zavrel::tests
