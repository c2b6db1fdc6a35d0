#pragma once
// Element by element over values and arrays of differing shapes.

#include <algorithm>
#include <cstdint>
#include <memory>
#include <utility>

#include "host/formula/evaluate.h"

namespace zavhost {

/// The shape that operands spread to: a single row, column or value repeats along the other's.
struct Spread {
  std::int32_t rows = 1;
  std::int32_t columns = 1;
  bool is_array = false;

  /// Takes one operand in; only arrays count.
  void Include(const Operand& operand);
  /// False when the shape is far larger than any of its operands (a whole column against a whole
  /// row): such a result is #VALUE! instead of the machine's memory.
  bool IsReasonable() const;

 private:
  std::int64_t largest_ = 1;
};

/// The operand's value at a place of the spread shape; #N/A beyond its own shape.
Value ElementAt(const Operand& operand, std::int32_t row, std::int32_t column);

/// Code units of all texts that one array may have newly made: 4 million elements of 32,767 each
/// would be 260 GB.
inline constexpr std::size_t kNewTextLimit = 16'000'000;

/// Code units of a text that nobody else holds yet.
std::size_t NewTextLength(const Value& value);

/// An array of the shape filled by f(row, column), or f(0, 0) alone when no operand was an array;
/// #VALUE! when its shape or its texts are unreasonably large.
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
