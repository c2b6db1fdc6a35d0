#include "functions/matrix_result.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "excel/double_value.h"
#include "excel/reference.h"
#include "frame/calling_array.h"

namespace zavrel {
namespace {

/// The matrix in the upper left of an array of `rows` x `columns`.
XXloper InArray(const DoubleMatrix& matrix, std::int32_t rows, std::int32_t columns) {
  XXloperArray array(rows, columns);
  const auto width = static_cast<std::size_t>(columns);
  for (std::size_t row = 0; row < std::min(matrix.size(), static_cast<std::size_t>(rows)); ++row) {
    for (std::size_t column = 0; column < std::min(matrix[row].size(), width); ++column) {
      const double value = matrix[row][column];
      if (std::isfinite(value)) {
        array.SetNumber(row * width + column, value);
      } else {
        array.Set(row * width + column, ToExcelValue(value).record());
      }
    }
  }
  return std::move(array).Finish();
}

}  // namespace

XXloper WholeMatrix(const DoubleMatrix& matrix) {
  if (matrix.empty() || matrix[0].empty() || matrix.size() > kExcelRows ||
      matrix[0].size() > kExcelColumns) {
    return XXloper::Error(ExcelError::kValue);
  }
  return InArray(matrix, static_cast<std::int32_t>(matrix.size()),
                 static_cast<std::int32_t>(matrix[0].size()));
}

CellResult MatrixForCaller(const DoubleMatrix& matrix) {
  const OrFailure<CallingRange> caller = CallingRange::Ask();
  if (!caller.ok()) return caller.failure();
  const bool several = caller->rows() > 1 || caller->columns() > 1;
  if (!several) return WholeMatrix(matrix);
  return InArray(matrix, std::min(caller->rows(), kMostResultRows),
                 std::min(caller->columns(), kMostResultColumns));
}

}  // namespace zavrel
