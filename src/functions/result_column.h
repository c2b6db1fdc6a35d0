#pragma once
// A variable made from other variables: one column with a cell for each row.

#include <cmath>
#include <cstddef>
#include <optional>

#include "data/excel_data.h"
#include "excel/or_failure.h"
#include "excel/xxloper.h"
#include "numbers/floating_point_scope.h"

namespace zavrel {

/// The value of one variable in one row: a number, an empty cell or an error.
struct VariableCell {
  enum class Kind { kNumber, kEmpty, kError };
  Kind kind = Kind::kEmpty;
  double number = 0;       // kNumber; shows as #NUM! if not finite
  std::int32_t error = 0;  // kError: Excel's code

  static VariableCell Number(double number) { return {Kind::kNumber, number}; }
  static VariableCell Error(std::int32_t code) { return {Kind::kError, 0, code}; }
};

/// The result for a cell that does not hold a number: an empty cell stays empty, an error stays the
/// same, anything else becomes #VALUE!.
inline VariableCell WithoutNumber(const SingleValue& cell) {
  switch (cell.tag) {
    case CellTag::kBlank:
    case CellTag::kMissing:
      return {};
    case CellTag::kError:
      return VariableCell::Error(cell.code);
    default:
      return VariableCell::Error(xlerrValue);
  }
}

/// The column of cell_of(0) ... cell_of(rows - 1), computed in a FloatingPointScope. More rows than
/// a sheet has: #VALUE!. No rows, as for a blank whole column: an empty value.
template <class CellOf>
XXloper ResultColumn(std::size_t rows, CellOf cell_of) {
  if (rows > kExcelRows) return XXloper::Error(ExcelError::kValue);
  if (rows == 0) return XXloper::Nil();
  const FloatingPointScope environment;
  XXloperArray column(static_cast<std::int32_t>(rows), 1);
  for (std::size_t row = 0; row < rows; ++row) {
    const VariableCell cell = cell_of(row);
    switch (cell.kind) {
      case VariableCell::Kind::kNumber:
        column.SetNumber(row, cell.number);
        break;
      case VariableCell::Kind::kEmpty:
        column.SetEmpty(row);
        break;
      case VariableCell::Kind::kError:
        column.SetError(row, cell.error);
        break;
    }
  }
  return std::move(column).Finish();
}

/// The same for cells that may be failures: the first failure becomes the result.
template <class CellOf>
OrFailure<XXloper> ResultColumnOrFailure(std::size_t rows, CellOf cell_of) {
  std::optional<Failure> failure;
  XXloper column = ResultColumn(rows, [&](std::size_t row) {
    if (failure) return VariableCell();
    const OrFailure<VariableCell> cell = cell_of(row);
    if (cell.ok()) return *cell;
    failure = cell.failure();
    return VariableCell();
  });
  if (failure) return *failure;
  return column;
}

}  // namespace zavrel
