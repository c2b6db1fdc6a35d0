#pragma once
// Eigen-analysis of symmetric matrices, and principal-component scores.

#include <vector>

#include "matrix/dense_kernels.h"
#include "numbers/double_matrix.h"

namespace zavrel::matrix {

struct EigendataOptions {
  bool compute_vectors = false;
  bool descending = false;
};

/// Eigenvalues of a symmetric matrix and, on request, its unit eigenvectors as columns in the same
/// order; the solver decides their signs.
///
/// Throws, in this order: VekArraySizeError if the rows differ in length; VekMatrixNotSquare;
/// VekMatrixNotSymmetric at the first element, row by row, that differs from the one across the
/// diagonal; VekInvalidDataType for values that are not finite; VekNoConvergence.
void eigendata_private(const DoubleMatrix& matrix, std::vector<double>& eigenvalues,
                       DoubleMatrix& eigenvectors, EigendataOptions options,
                       const dense::Kernels& kernels = dense::BestKernels());

/// The coordinates of each observation (a row of X) on X's principal axes: U S of the thin singular
/// value decomposition X = U S V', m x min(m, p). X is used as it is, neither centred nor scaled.
/// Throws VekArraySizeError if the rows differ in length, VekInvalidDataType for values that are
/// not finite, VekNoConvergence.
DoubleMatrix PrincipalComponentScores(const DoubleMatrix& x,
                                      const dense::Kernels& kernels = dense::BestKernels());

}  // namespace zavrel::matrix
