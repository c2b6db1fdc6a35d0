#pragma once
// Arrays that are made of the rows or columns of others.

#include <cstdint>
#include <span>
#include <utility>

#include "host/formula/argument_reader.h"

namespace zavhost {

/// Rows and columns exchanged.
ArrayPtr Transposed(const ArrayPtr& array);

/// The rows with these zero-based numbers: #CALC! if there are none, #VALUE! if the array would be
/// larger than kLargestMadeArray.
Operand RowsOf(const Array& array, std::span<const std::int32_t> rows);

/// What `of_rows(array)` makes of the rows of an array, or of its columns instead.
template <typename OfRows>
Operand ByLines(const ArrayPtr& array, bool is_by_columns, const OfRows& of_rows) {
  if (!is_by_columns) return of_rows(array);
  Operand result = of_rows(Transposed(array));
  if (const ArrayPtr* made = std::get_if<ArrayPtr>(&result)) return Transposed(*made);
  return result;
}

}  // namespace zavhost
