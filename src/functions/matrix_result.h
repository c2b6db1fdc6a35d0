#pragma once
// Matrices as results of worksheet functions.

#include "excel/xxloper.h"
#include "numbers/double_matrix.h"

namespace zavrel {

/// All of a matrix; a double that stands for an error becomes that error. No rows or columns, or
/// more than a sheet has: #VALUE!.
XXloper WholeMatrix(const DoubleMatrix& matrix);

/// A matrix cut to the calling range, #N/A in the cells that are left over, at most 65535 x 256 of
/// them. Called from a single cell or from none (as the argument of another function it is the same
/// to Excel), all of it.
XXloper MatrixForCaller(const DoubleMatrix& matrix);

}  // namespace zavrel
