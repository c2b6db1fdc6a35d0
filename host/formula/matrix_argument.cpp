#include "host/formula/matrix_argument.h"

#include "host/formula/coercion.h"

namespace zavhost {

Matrix ReadMatrix(ArgumentReader& read, std::size_t index) {
  const ArrayPtr array = read.Array(index);
  Matrix matrix{
      static_cast<std::size_t>(array->rows), static_cast<std::size_t>(array->columns), {}};
  matrix.values.reserve(array->values.size());
  for (const Value& value : array->values) {
    if (value.error() != nullptr) read.Fail(*value.error());
    const double* number = value.number();
    read.Require(number != nullptr, ErrorCode::kValue);
    matrix.values.push_back(number != nullptr ? *number : 0.0);
  }
  return matrix;
}

Operand MatrixResult(const std::optional<Matrix>& matrix, ErrorCode otherwise) {
  if (!matrix) return Value(otherwise);
  std::vector<Value> values;
  values.reserve(matrix->values.size());
  for (const double number : matrix->values) values.push_back(NumberValue(number));
  return ArrayResult(static_cast<std::int32_t>(matrix->rows),
                     static_cast<std::int32_t>(matrix->columns), std::move(values));
}

}  // namespace zavhost
