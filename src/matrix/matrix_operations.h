#pragma once
// Sum, product, inverse and determinant of plain matrices.
//
// A matrix whose rows differ in length, or operands whose shapes do not go together, throw
// VekArraySizeError, sizes that no memory holds std::bad_alloc. A matrix of no rows is 0 x 0.

#include "numbers/double_matrix.h"

namespace zavrel {

/// A + B in A's shape; B may be larger, not smaller.
DoubleMatrix MatrixAdd(const DoubleMatrix& a, const DoubleMatrix& b);

/// A x B. Each element is the sum over m in order of A[r][m] B[m][c], the rows of the result in
/// parallel; when every dimension of both exceeds 1024, the blocked product of the linear-algebra
/// library, whose sums run in another order.
DoubleMatrix MatrixMultiply(const DoubleMatrix& a, const DoubleMatrix& b);

/// The inverse by LU decomposition with row pivoting. No matrix is found singular: its inverse has
/// entries that are not finite. Not square: VekMatrixNotSquare.
DoubleMatrix MatrixInverse(const DoubleMatrix& a);

/// The determinant by the same decomposition; 1 for a 0 x 0 matrix. Not square: VekMatrixNotSquare.
double MatrixDeterminant(const DoubleMatrix& a);

}  // namespace zavrel
