#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "data/cell_columns.h"
#include "functions/result_column.h"

namespace zavrel {

/// The 0/1 variable of a category: 1 where a cell's text is the category's but for letter case, 0
/// where it is another. A number is compared by the host's own text for it, so that the category
/// "2" marks the cells with the number 2. Every other cell is as in WithoutNumber.
class Indicator {
 public:
  explicit Indicator(std::u16string category) : category_(std::move(category)) {}

  /// Uncalculated when the host, asked for a number's text, wants the call to end.
  OrFailure<VariableCell> Of(const SingleValue& cell);

 private:
  /// A number by its bits, and whether its text is the category's.
  struct KnownNumber {
    std::uint64_t bits;
    bool matches;
  };
  static constexpr std::size_t kKnownNumbers = 256;

  std::u16string category_;
  // Numbers that stand for categories repeat: the host is asked once for each of a few hundred, not
  // for every cell. A number has one place, which the latest one keeps.
  std::array<std::optional<KnownNumber>, kKnownNumbers> known_{};
};

}  // namespace zavrel
