#pragma once
// Matrices as results of worksheet functions.

#include "excel/xxloper.h"
#include "frame/cell_result.h"
#include "numbers/double_matrix.h"

namespace zavrel {

/// The whole matrix; a double that stands for an error becomes that error. No rows or columns, or
/// more than a sheet has: #VALUE!.
XXloper WholeMatrix(const DoubleMatrix& matrix);

/// The matrix cut to the calling range, with at most 65535 x 256 cells; #N/A in the cells outside
/// the matrix. If the call comes from a single cell or not from a range (Excel does not distinguish
/// the argument of another function), the whole matrix.
CellResult MatrixForCaller(const DoubleMatrix& matrix);

}  // namespace zavrel
