#pragma once
// Sum, product, inverse and determinant of plain matrices.
//
// A matrix whose rows differ in length, or operands whose shapes do not match, throw
// VekArraySizeError. Sizes that do not fit into memory throw std::bad_alloc. A matrix without rows
// is 0 x 0.

#include "numbers/double_matrix.h"

namespace zavrel {

/// A + B in the shape of A; B may be larger but not smaller.
DoubleMatrix MatrixAdd(const DoubleMatrix& a, const DoubleMatrix& b);

/// A x B. Each element is the sum of A[r][m] B[m][c] in the order of m; the rows of the result are
/// computed in parallel. If every dimension of both exceeds 1024, the result is the blocked product
/// of the linear-algebra library, whose sums run in another order.
DoubleMatrix MatrixMultiply(const DoubleMatrix& a, const DoubleMatrix& b);

/// The inverse by LU decomposition with row pivoting. A singular matrix is not detected; its
/// inverse has entries that are not finite. Throws VekMatrixNotSquare.
DoubleMatrix MatrixInverse(const DoubleMatrix& a);

/// The determinant by the same decomposition; 1 for a 0 x 0 matrix. Throws VekMatrixNotSquare.
double MatrixDeterminant(const DoubleMatrix& a);

}  // namespace zavrel
