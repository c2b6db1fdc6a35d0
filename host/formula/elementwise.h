#pragma once
// Element-by-element operations on values and arrays of different shapes.

#include <algorithm>
#include <cstdint>
#include <memory>
#include <utility>

#include "host/formula/evaluate.h"

namespace zavhost {

/// The shape to which operands are extended: a single row, column or value repeats along the other
/// operand.
struct Spread {
  std::int32_t rows = 1;
  std::int32_t columns = 1;
  bool is_array = false;

  /// Includes an operand; only arrays count.
  void Include(const Operand& operand);
  /// False if the shape is far larger than any of its operands (a whole column with a whole row).
  /// Such a result is #VALUE!, since it would take all of the memory.
  bool IsReasonable() const;

 private:
  std::int64_t largest_ = 1;
};

/// The operand's value at a position of the extended shape; #N/A beyond its own shape.
Value ElementAt(const Operand& operand, std::int32_t row, std::int32_t column);

/// The maximum number of code units of new texts in one array: 4 million elements of 32,767 each
/// would take 260 GB.
inline constexpr std::size_t kNewTextLimit = 16'000'000;

/// The number of code units of a text that has no other owner yet.
std::size_t NewTextLength(const Value& value);

/// An array of the shape, filled by f(row, column), or only f(0, 0) if no operand was an array;
/// #VALUE! if its shape or its texts are unreasonably large.
template <typename Function>
Operand FillSpread(const Spread& spread, const Function& f) {
  if (!spread.is_array) return Value(f(0, 0));
  if (!spread.IsReasonable()) return Value(ErrorCode::kValue);
  Array array;
  array.rows = spread.rows;
  array.columns = spread.columns;
  array.values.reserve(static_cast<std::size_t>(spread.rows) *
                       static_cast<std::size_t>(spread.columns));
  std::size_t new_text = 0;
  for (std::int32_t row = 0; row < spread.rows; ++row) {
    for (std::int32_t column = 0; column < spread.columns; ++column) {
      array.values.push_back(f(row, column));
      new_text += NewTextLength(array.values.back());
      if (new_text > kNewTextLimit) return Value(ErrorCode::kValue);
    }
  }
  return std::make_shared<const Array>(std::move(array));
}

}  // namespace zavhost
