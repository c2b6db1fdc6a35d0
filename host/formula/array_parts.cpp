#include "host/formula/array_parts.h"

#include <memory>
#include <vector>

namespace zavhost {

ArrayPtr Transposed(const ArrayPtr& array) {
  Array turned{array->columns, array->rows, {}};
  turned.values.reserve(array->values.size());
  for (std::int32_t row = 0; row < turned.rows; ++row) {
    for (std::int32_t column = 0; column < turned.columns; ++column)
      turned.values.push_back(array->At(column, row));
  }
  return std::make_shared<const Array>(std::move(turned));
}

Operand RowsOf(const Array& array, std::span<const std::int32_t> rows) {
  if (rows.empty()) return Value(ErrorCode::kCalc);
  const std::size_t size = rows.size() * static_cast<std::size_t>(array.columns);
  if (static_cast<double>(size) > kLargestMadeArray) return Value(ErrorCode::kValue);
  std::vector<Value> values;
  values.reserve(size);
  for (const std::int32_t row : rows) {
    for (std::int32_t column = 0; column < array.columns; ++column)
      values.push_back(array.At(row, column));
  }
  return ArrayResult(static_cast<std::int32_t>(rows.size()), array.columns, std::move(values));
}

}  // namespace zavhost
