#include "host/workbook/number_format.h"

#include <cmath>
#include <span>

namespace zavhost {
namespace {

using Kind = FormatTokenKind;
using Sections = std::span<const FormatSection>;

/// The section for a number; null if none of their conditions holds.
const FormatSection* SectionFor(double number, Sections sections) {
  const auto is_for = [&](std::size_t index) {
    const FormatSection& section = sections[index];
    if (section.condition) return section.condition->Holds(number);
    if (index == 0)
      return sections.size() == 1 || number > 0 || (sections.size() == 2 && number == 0);
    if (index == 1) return number < 0 || (sections.size() == 2 && sections[0].condition);
    return true;
  };
  for (std::size_t i = 0; i < sections.size(); ++i) {
    if (is_for(i)) return &sections[i];
  }
  return nullptr;
}

/// True if a section is only for negative numbers, which it shows without a sign.
bool IsOfNegatives(const FormatSection& section, Sections sections) {
  if (section.condition) return section.condition->IsOfNegatives();
  const bool is_second = &section == &sections.front() + 1;
  return is_second && (sections.size() > 2 || !sections[0].condition);
}

/// A section's literals with a text in place of General and @.
std::u16string WithText(const FormatSection& section, std::u16string_view text) {
  std::u16string shown;
  for (const FormatToken& token : section.tokens) {
    if (token.kind == Kind::kGeneral || token.kind == Kind::kText)
      shown += text;
    else if (token.kind == Kind::kLiteral)
      shown += token.text;
  }
  return shown;
}

std::optional<std::u16string> NumberIn(double number, Sections sections, bool date1904) {
  if (sections.empty()) return GeneralText(number);
  const FormatSection* section = SectionFor(number, sections);
  if (section == nullptr) return GeneralText(number);
  if (section->tokens.empty()) return u"";
  const bool has_sign = number < 0 && !IsOfNegatives(*section, sections);
  const double magnitude = std::fabs(number);
  if (section->is_date) return FormattedDate(has_sign ? number : magnitude, *section, date1904);
  const bool has_words = section->Has(Kind::kGeneral) || section->Has(Kind::kText);
  auto shown =
      has_words ? WithText(*section, GeneralText(magnitude)) : FormattedNumber(magnitude, *section);
  return shown && has_sign ? u"-" + *shown : shown;
}

}  // namespace

std::optional<std::u16string> FormattedText(const Value& value, std::u16string_view code,
                                            bool date1904) {
  const auto parsed = ParseFormatCode(code);
  if (!parsed || value.error() != nullptr) return std::nullopt;
  if (const bool* boolean = value.boolean()) return *boolean ? u"TRUE" : u"FALSE";
  // The fourth section is for texts, and an earlier last one if it has an @.
  Sections numbers = *parsed;
  const FormatSection* texts = nullptr;
  if (numbers.size() == 4 || numbers.back().Has(Kind::kText)) {
    texts = &numbers.back();
    numbers = numbers.first(numbers.size() - 1);
  }
  if (const std::u16string* text = value.text()) return texts ? WithText(*texts, *text) : *text;
  return NumberIn(value.number() != nullptr ? *value.number() : 0.0, numbers, date1904);
}

}  // namespace zavhost
