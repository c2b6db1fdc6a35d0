#include "matrix/dense_kernels.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "matrix/dense_kernels.cpp"
#include <hwy/foreach_target.h>
// After foreach_target.h, which sets what it defines.
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace zavrel::dense::HWY_NAMESPACE {
namespace {

namespace hn = hwy::HWY_NAMESPACE;

using Tag = hn::ScalableTag<double>;
constexpr std::size_t kWidth = hn::MaxLanes(Tag());

// The size of a block of B, which stays in the first-level cache while the rows of A are processed.
constexpr std::size_t kInnerBlock = 96;
constexpr std::size_t kColumnBlock = 32;

struct Span {
  std::size_t begin, end;
};

/// kRows rows by kVectors vectors of the result, held in registers over the inner dimension.
template <std::size_t kRows, std::size_t kVectors>
void AddTile(const double* const* a, const double* const* b, Span inner, std::size_t column,
             double* const* out) {
  const Tag d;
  hn::Vec<Tag> sums[kRows][kVectors];
  for (std::size_t r = 0; r < kRows; ++r)
    for (std::size_t v = 0; v < kVectors; ++v)
      sums[r][v] = hn::LoadU(d, out[r] + column + v * kWidth);
  for (std::size_t m = inner.begin; m < inner.end; ++m) {
    const double* const from = b[m] + column;
    for (std::size_t r = 0; r < kRows; ++r)
      for (std::size_t v = 0; v < kVectors; ++v)
        sums[r][v] =
            hn::Add(sums[r][v], hn::Mul(hn::Set(d, a[r][m]), hn::LoadU(d, from + v * kWidth)));
  }
  for (std::size_t r = 0; r < kRows; ++r)
    for (std::size_t v = 0; v < kVectors; ++v)
      hn::StoreU(sums[r][v], d, out[r] + column + v * kWidth);
}

template <std::size_t kRows, std::size_t kVectors>
void AddRows(const double* const* a, const double* const* b, Span inner, Span columns,
             double* const* out) {
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

std::size_t BlockEnd(std::size_t begin, std::size_t size, std::size_t end) {
  return end - begin < size ? end : begin + size;
}

void AddProducts(const double* const* a, std::size_t rows, std::size_t inner,
                 const double* const* b, std::size_t columns, double* const* out) {
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

/// The best build of the library for these instructions.
const Kernels& Best() { return HWY_TARGET <= HWY_AVX2 ? kAvx2Kernels : kBaselineKernels; }

}  // namespace
}  // namespace zavrel::dense::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace zavrel::dense {
namespace {

HWY_EXPORT(AddProducts);
HWY_EXPORT(Best);

}  // namespace

const Kernels kBaselineKernels{baseline::Multiply, baseline::Factor, baseline::InvertColumns,
                               baseline::SelfAdjointEigen, baseline::SingularScores};
const Kernels kAvx2Kernels{avx2::Multiply, avx2::Factor, avx2::InvertColumns,
                           avx2::SelfAdjointEigen, avx2::SingularScores};

const Kernels& BestKernels() noexcept { return HWY_DYNAMIC_DISPATCH(Best)(); }

void AddRowProducts(const double* const* a, std::size_t rows, std::size_t inner,
                    const double* const* b, std::size_t columns, double* const* out) noexcept {
  HWY_DYNAMIC_DISPATCH(AddProducts)(a, rows, inner, b, columns, out);
}

}  // namespace zavrel::dense
#endif
