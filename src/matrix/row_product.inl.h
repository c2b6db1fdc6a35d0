// The product whose sums keep their order. Included once for each instruction set, with
// ZAV_DENSE_NAMESPACE as its namespace.

#include <cstddef>

#include "matrix/dense_kernels.h"

namespace zavrel::dense::ZAV_DENSE_NAMESPACE {
namespace {

#ifdef __AVX2__
using Vector [[gnu::vector_size(32), gnu::aligned(8), gnu::may_alias]] = double;
#else
using Vector [[gnu::vector_size(16), gnu::aligned(8), gnu::may_alias]] = double;
#endif
constexpr std::size_t kWidth = sizeof(Vector) / sizeof(double);

// The size of a block of B, which stays in the first-level cache while the rows of A are processed.
constexpr std::size_t kInnerBlock = 96;
constexpr std::size_t kColumnBlock = 32;

struct Span {
  std::size_t begin, end;
};

/// kRows rows by kVectors vectors of the result, held in registers over the inner dimension.
template <std::size_t kRows, std::size_t kVectors>
void AddTile(const double* const* a, const double* const* b, Span inner, std::size_t column,
             double* const* out) noexcept {
  Vector sums[kRows][kVectors];
  for (std::size_t r = 0; r < kRows; ++r)
    for (std::size_t v = 0; v < kVectors; ++v)
      sums[r][v] = *reinterpret_cast<const Vector*>(out[r] + column + v * kWidth);
  for (std::size_t m = inner.begin; m < inner.end; ++m) {
    const double* const from = b[m] + column;
    for (std::size_t r = 0; r < kRows; ++r)
      for (std::size_t v = 0; v < kVectors; ++v)
        sums[r][v] += a[r][m] * *reinterpret_cast<const Vector*>(from + v * kWidth);
  }
  for (std::size_t r = 0; r < kRows; ++r)
    for (std::size_t v = 0; v < kVectors; ++v)
      *reinterpret_cast<Vector*>(out[r] + column + v * kWidth) = sums[r][v];
}

template <std::size_t kRows, std::size_t kVectors>
void AddRows(const double* const* a, const double* const* b, Span inner, Span columns,
             double* const* out) noexcept {
  std::size_t c = columns.begin;
  for (; c + kVectors * kWidth <= columns.end; c += kVectors * kWidth)
    AddTile<kRows, kVectors>(a, b, inner, c, out);
  for (; c + kWidth <= columns.end; c += kWidth) AddTile<kRows, 1>(a, b, inner, c, out);
  for (; c < columns.end; ++c) {
    for (std::size_t r = 0; r < kRows; ++r) {
      double sum = out[r][c];
      for (std::size_t m = inner.begin; m < inner.end; ++m) sum += a[r][m] * b[m][c];
      out[r][c] = sum;
    }
  }
}

std::size_t BlockEnd(std::size_t begin, std::size_t size, std::size_t end) noexcept {
  return end - begin < size ? end : begin + size;
}

}  // namespace

void AddRowProducts(const double* const* a, std::size_t rows, std::size_t inner,
                    const double* const* b, std::size_t columns, double* const* out) noexcept {
  for (std::size_t m = 0; m < inner; m += kInnerBlock) {
    const Span inner_block{m, BlockEnd(m, kInnerBlock, inner)};
    for (std::size_t c = 0; c < columns; c += kColumnBlock) {
      const Span column_block{c, BlockEnd(c, kColumnBlock, columns)};
      std::size_t r = 0;
      for (; r + 4 <= rows; r += 4) AddRows<4, 2>(a + r, b, inner_block, column_block, out + r);
      for (; r < rows; ++r) AddRows<1, 4>(a + r, b, inner_block, column_block, out + r);
    }
  }
}

}  // namespace zavrel::dense::ZAV_DENSE_NAMESPACE
