#pragma once
// A matrix in one piece of memory, and its conversion to and from rows.

#include <cstddef>
#include <cstdint>
#include <limits>
#include <new>
#include <optional>

#include "numbers/double_matrix.h"
#include "platform/block_pool.h"
#include "platform/swapped_array.h"

namespace zavrel::dense {

struct Shape {
  std::size_t rows = 0, columns = 0;
  bool operator==(const Shape&) const = default;
};

/// Throws VekArraySizeError if the rows differ in length.
Shape ShapeOf(const DoubleMatrix& matrix, const char* place);
/// The rows of a square matrix. Throws VekMatrixNotSquare as well.
std::size_t SizeOfSquare(const DoubleMatrix& matrix, const char* place);

/// rows x columns. Throws std::bad_alloc if so many doubles cannot be addressed.
inline std::size_t CheckedCount(Shape shape) {
  constexpr std::size_t kMost =
      static_cast<std::size_t>(std::numeric_limits<std::ptrdiff_t>::max()) / sizeof(double) / 2;
  if (shape.columns != 0 && shape.rows > kMost / shape.columns) throw std::bad_alloc();
  return shape.rows * shape.columns;
}

/// Room for rows x columns uninitialised doubles, aligned to a cache line: in memory or, beyond the
/// memory budget, on disk. Throws std::bad_alloc, and if the disk is too small or cannot be used,
/// VekErrorWritingFile or VekErrorOpeningFile with the temporary folder.
class Storage {
 public:
  explicit Storage(Shape shape);

  double* data() noexcept { return numbers_; }
  const double* data() const noexcept { return numbers_; }

 private:
  BlockArray<double> block_;
  std::optional<SwappedArray> swapped_;  // instead of the block
  double* numbers_;
};

/// A matrix of zeros.
DoubleMatrix MakeMatrix(Shape shape);

/// Copies the rows one after the other.
void CopyRows(const DoubleMatrix& from, Shape shape, double* to) noexcept;
/// Copies the rows into consecutive columns.
void CopyToColumns(const DoubleMatrix& from, Shape shape, double* to) noexcept;
/// Copies consecutive columns into the rows, starting at `first_column`.
void CopyFromColumns(const double* from, Shape shape, std::size_t first_column,
                     DoubleMatrix& to) noexcept;

bool IsFinite(const double* numbers, std::size_t count) noexcept;

}  // namespace zavrel::dense
