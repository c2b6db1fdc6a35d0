#pragma once
// The linear-algebra library called directly, compiled for AVX2, as a floor. Matrices are already
// in its own column-major storage, and nothing is checked.

#include <cstddef>
#include <memory>
#include <vector>

namespace zavrel::bench {

/// Adds X'X of some rows of a column-major matrix to the lower triangle of `sums` (columns x
/// columns).
void AddSymmetricUpdate(const double* x, std::size_t first_row, std::size_t rows,
                        std::size_t all_rows, std::size_t columns, double* sums);

/// A matrix of the library, made from rows.
class LibraryMatrix {
 public:
  explicit LibraryMatrix(const std::vector<std::vector<double>>& rows);
  ~LibraryMatrix();
  LibraryMatrix(const LibraryMatrix&) = delete;
  LibraryMatrix& operator=(const LibraryMatrix&) = delete;

  /// Rows [first, first + count) of the matrix times itself, written to the same rows of `out`.
  void MultiplyRows(std::size_t first, std::size_t count, LibraryMatrix& out) const;
  /// Each returns a number from its result, so that the compiler cannot omit the computation.
  double Inverse() const;
  double Determinant() const;
  double EigenvaluesAndVectors() const;
  /// U S of the thin singular value decomposition.
  double Scores() const;

 private:
  struct Numbers;
  std::unique_ptr<Numbers> numbers_;
};

}  // namespace zavrel::bench
