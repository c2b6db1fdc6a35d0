#include "functions/indicator.h"

#include "data/category_name.h"
#include "platform/letter_case.h"

namespace zavrel {

std::optional<VariableCell> Indicator::Of(const SingleValue& cell) {
  const auto number = [](bool matches) { return VariableCell::Number(matches ? 1 : 0); };
  if (cell.tag == CellTag::kText) return number(EqualIgnoringCase(cell.text, category_));
  if (!cell.IsNumber()) return WithoutNumber(cell);
  if (latest_number_ != cell.number) {
    const std::optional<std::u16string> text = CategoryNameOf(cell);
    if (!text) return std::nullopt;
    latest_number_ = cell.number;
    latest_matches_ = EqualIgnoringCase(*text, category_);
  }
  return number(latest_matches_);
}

}  // namespace zavrel
