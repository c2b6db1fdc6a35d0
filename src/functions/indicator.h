#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "data/cell_columns.h"
#include "functions/result_column.h"

namespace zavrel {

/// The 0/1 variable of a category: 1 for a cell whose text equals the category's in any letter
/// case, 0 for a cell with another text. A number is compared by the host's text for it, so the
/// category "2" matches cells with the number 2. For every other cell see WithoutNumber.
class Indicator {
 public:
  explicit Indicator(std::u16string category) : category_(std::move(category)) {}

  /// Fails if the host, asked for a number's text, gives none.
  OrFailure<VariableCell> Of(const SingleValue& cell);

 private:
  /// The bits of a number, and whether its text matches the category's.
  struct KnownNumber {
    std::uint64_t bits;
    bool matches;
  };
  static constexpr std::size_t kKnownNumbers = 256;

  std::u16string category_;
  // Numbers that stand for categories repeat, so the texts of up to kKnownNumbers numbers are
  // remembered and the host is not asked for every cell. A number has one possible place, where it
  // replaces an earlier number.
  std::array<std::optional<KnownNumber>, kKnownNumbers> known_{};
};

}  // namespace zavrel
