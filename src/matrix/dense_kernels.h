#pragma once
// The inner loops of the matrix operations, on plain memory. Those of Eigen are compiled twice: for
// every x86-64 processor, and for those with AVX2 and FMA.
//
// Nothing here is a template of the standard library, since the linker might keep an instantiation
// from an AVX2 unit for all callers.

#include <cstddef>

namespace zavrel::dense {

enum class Outcome { kDone, kInvalidValues, kNoConvergence };

// Dense matrices are stored column by column without padding, unless stated otherwise. A function
// that needs its own memory throws std::bad_alloc if there is none; nothing else is thrown.

/// Adds A x B to `out`; all are given by their rows. Each element is summed in the order of A's
/// columns, without fused operations, so it is the same number on every processor.
void AddRowProducts(const double* const* a, std::size_t rows, std::size_t inner,
                    const double* const* b, std::size_t columns, double* const* out) noexcept;

/// A x B, all three row by row without padding. The product is blocked, so sums have no fixed
/// order.
using BlockedProduct = void(const double* a, std::size_t rows, std::size_t inner, const double* b,
                            std::size_t columns, double* out);

/// Replaces an n x n matrix by L and U of its decomposition with row pivoting (L without its
/// diagonal of ones). Row i of the matrix has moved to row places[i]; returns the sign of that
/// permutation. n > 0.
using Factorization = int(double* matrix, std::size_t n, int* places);

/// Columns [first, first + count) of the inverse, from the decomposition.
using InverseColumns = void(const double* factors, const int* places, std::size_t n,
                            std::size_t first, std::size_t count, double* out);

/// Eigenvalues of a symmetric n x n matrix in ascending order and, unless `vectors` is null, its
/// eigenvectors as columns. The matrix must be finite; n > 0.
using SelfAdjointSolver = Outcome(const double* matrix, std::size_t n, double* values,
                                  double* vectors);

/// U S of the thin singular value decomposition: rows x min(rows, columns), where neither is 0. X
/// must be finite, and what it holds afterwards is of no use.
using ScoreSolver = Outcome(double* x, std::size_t rows, std::size_t columns, double* scores);

struct Kernels {
  BlockedProduct* multiply;
  Factorization* factor;
  InverseColumns* invert_columns;
  SelfAdjointSolver* self_adjoint_eigen;
  ScoreSolver* singular_scores;
};

namespace baseline {
BlockedProduct Multiply;
Factorization Factor;
InverseColumns InvertColumns;
SelfAdjointSolver SelfAdjointEigen;
ScoreSolver SingularScores;
}  // namespace baseline
namespace avx2 {
BlockedProduct Multiply;
Factorization Factor;
InverseColumns InvertColumns;
SelfAdjointSolver SelfAdjointEigen;
ScoreSolver SingularScores;
}  // namespace avx2

extern const Kernels kBaselineKernels;
/// Only for processors that have AVX2 and FMA.
extern const Kernels kAvx2Kernels;

/// The faster version of those that this processor can run.
const Kernels& BestKernels() noexcept;

}  // namespace zavrel::dense
