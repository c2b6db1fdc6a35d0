#pragma once

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

  /// Nothing when the host wants the call to end.
  std::optional<VariableCell> Of(const SingleValue& cell);

 private:
  std::u16string category_;
  // Numbers that stand for categories repeat: the host is asked once for each that comes again.
  std::optional<double> latest_number_;
  bool latest_matches_ = false;
};

}  // namespace zavrel
