#include "functions/indicator.h"

#include <bit>

#include "data/category_name.h"
#include "platform/letter_case.h"

namespace zavrel {

OrFailure<VariableCell> Indicator::Of(const SingleValue& cell) {
  const auto number = [](bool matches) { return VariableCell::Number(matches ? 1 : 0); };
  if (cell.tag == CellTag::kText) return number(EqualIgnoringCase(cell.text, category_));
  if (!cell.IsNumber()) return WithoutNumber(cell);

  const auto bits = std::bit_cast<std::uint64_t>(cell.number);
  constexpr std::uint64_t kSpread = 0x9E3779B97F4A7C15;  // 2^64 over the golden ratio
  std::optional<KnownNumber>& known = known_[bits * kSpread >> 56];
  if (!known || known->bits != bits) {
    const OrFailure<std::u16string> text = CategoryNameOf(cell);
    if (!text.ok()) return text.failure();
    known = {bits, EqualIgnoringCase(*text, category_)};
  }
  return number(known->matches);
}

}  // namespace zavrel
