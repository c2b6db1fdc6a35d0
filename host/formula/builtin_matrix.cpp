// Matrix algebra.

#include "host/formula/builtin_groups.h"
#include "host/formula/coercion.h"
#include "host/formula/linear_algebra.h"
#include "host/formula/matrix_argument.h"
#include "host/formula/number_function.h"

namespace zavhost {
namespace {

Operand MMult(const BuiltInCall& call) {
  ArgumentReader read(call);
  const Matrix a = ReadMatrix(read, 0);
  const Matrix b = ReadMatrix(read, 1);
  read.Require(a.columns == b.rows, ErrorCode::kValue);
  read.Require(static_cast<double>(a.rows) * static_cast<double>(b.columns) <= kLargestMadeArray,
               ErrorCode::kValue);
  if (read.failed()) return read.failure();
  return MatrixResult(Product(a, b), ErrorCode::kValue);
}

Matrix ReadSquare(ArgumentReader& read) {
  Matrix matrix = ReadMatrix(read, 0);
  read.Require(matrix.rows == matrix.columns, ErrorCode::kValue);
  return matrix;
}

Operand MInverse(const BuiltInCall& call) {
  ArgumentReader read(call);
  const Matrix matrix = ReadSquare(read);
  if (read.failed()) return read.failure();
  return MatrixResult(Inverse(matrix), ErrorCode::kNum);
}

Operand MDeterm(const BuiltInCall& call) {
  ArgumentReader read(call);
  const Matrix matrix = ReadSquare(read);
  if (read.failed()) return read.failure();
  return NumberValue(Determinant(matrix).value_or(kNum));
}

Operand MUnit(const BuiltInCall& call) {
  ArgumentReader read(call);
  const double size = read.Whole(0);
  read.Require(size >= 1.0 && size * size <= kLargestMadeArray, ErrorCode::kValue);
  if (read.failed()) return read.failure();
  const auto count = static_cast<std::size_t>(size);
  std::vector<Value> values(count * count, Value(0.0));
  for (std::size_t i = 0; i < count; ++i) values[i * count + i] = 1.0;
  const auto side = static_cast<std::int32_t>(count);
  return ArrayResult(side, side, std::move(values));
}

constexpr BuiltInFunction kFunctions[] = {
    {u"MMULT", 2, 2, "a", MMult},
    {u"MINVERSE", 1, 1, "a", MInverse},
    {u"MDETERM", 1, 1, "a", MDeterm},
    {u"MUNIT", 1, 1, "s", MUnit},
};

}  // namespace

std::span<const BuiltInFunction> MatrixFunctions() { return kFunctions; }

}  // namespace zavhost
