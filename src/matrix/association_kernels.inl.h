// The kernels for vectors of kWidth doubles; without an include guard. The including file defines
// ZAV_VECTOR_WIDTH and gets the kernels with internal linkage. They are compiled for two
// instruction sets, so the linker must not merge any of these functions. For the same reason, this
// file includes nothing else that has inline functions.

#include "matrix/association_kernels.h"

namespace zavrel {
namespace {

constexpr std::size_t kWidth = ZAV_VECTOR_WIDTH;
constexpr std::size_t kParts = kGroup / kWidth;  // vectors of a group
using Vector [[gnu::vector_size(kWidth * sizeof(double))]] = double;
using Mask [[gnu::vector_size(kWidth * sizeof(double))]] = std::int64_t;
using Bits [[gnu::vector_size(kWidth * sizeof(double))]] = std::uint64_t;

/// A vector in memory, with the alignment of a double. Only with such a type does the compiler
/// combine a load with the instruction that uses the value.
template <class T>
using Unaligned [[gnu::aligned(alignof(double)), gnu::may_alias]] = T;

inline Vector Load(const double* from) { return *reinterpret_cast<const Unaligned<Vector>*>(from); }
inline void Store(double* to, Vector value) { *reinterpret_cast<Unaligned<Vector>*>(to) = value; }

inline Vector All(double value) { return value - Vector{}; }
inline Vector Masked(Vector value, Mask mask) { return (Vector)((Mask)value & mask); }

/// Each vector holds a row: its values in kWidth columns.
inline void LoadRows(const double* const* columns, std::size_t first, Vector (&rows)[kWidth]) {
#if ZAV_VECTOR_WIDTH == 4
  using Half [[gnu::vector_size(2 * sizeof(double))]] = double;
  // Loading halves reduces the work to one shuffle per row.
  const auto halves = [&](std::size_t low, std::size_t high, std::size_t row) {
    const Half a = *reinterpret_cast<const Unaligned<Half>*>(columns[low] + first + row);
    const Half b = *reinterpret_cast<const Unaligned<Half>*>(columns[high] + first + row);
    const Vector low_half = __builtin_shufflevector(a, a, 0, 1, -1, -1);
    return __builtin_ia32_vinsertf128_pd256(low_half, b, 1);
  };
#pragma GCC unroll 2
  for (std::size_t row = 0; row < kWidth; row += 2) {
    const Vector a = halves(0, 2, row);
    const Vector b = halves(1, 3, row);
    rows[row] = __builtin_shufflevector(a, b, 0, 4, 2, 6);
    rows[row + 1] = __builtin_shufflevector(a, b, 1, 5, 3, 7);
  }
#else
  const Vector a = Load(columns[0] + first);
  const Vector b = Load(columns[1] + first);
  rows[0] = __builtin_shufflevector(a, b, 0, 2);
  rows[1] = __builtin_shufflevector(a, b, 1, 3);
#endif
}

template <std::size_t kGroups>
void SumGroups(const double* const* columns, std::size_t rows, double* sums) {
  constexpr std::size_t kVectors = kGroups * kParts;
  constexpr std::size_t kColumns = kGroups * kGroup;
  const double* starts[kColumns];
#pragma GCC unroll 16
  for (std::size_t c = 0; c < kColumns; ++c) starts[c] = columns[c];
  Vector sum[kVectors] = {};
  const std::size_t vectors_end = rows - rows % kWidth;
  for (std::size_t r = 0; r < vectors_end; r += kWidth) {
#pragma GCC unroll 8
    for (std::size_t v = 0; v < kVectors; ++v) {
      Vector row[kWidth];
      LoadRows(starts + v * kWidth, r, row);
#pragma GCC unroll 4
      for (std::size_t t = 0; t < kWidth; ++t) sum[v] += row[t];
    }
  }
#pragma GCC unroll 8
  for (std::size_t v = 0; v < kVectors; ++v) Store(sums + v * kWidth, sum[v]);
  for (std::size_t c = 0; c < kColumns; ++c) {
    for (std::size_t r = vectors_end; r < rows; ++r) sums[c] += columns[c][r];
  }
}

void SumColumns(const double* const* columns, std::size_t groups, std::size_t rows, double* sums) {
  constexpr decltype(&SumGroups<1>) kForms[kMostSummed] = {SumGroups<1>, SumGroups<2>, SumGroups<3>,
                                                           SumGroups<4>};
  kForms[groups - 1](columns, rows, sums);
}

/// Prefetches data some values ahead, possibly beyond the end.
inline void Prefetch(const double* from, std::size_t ahead) {
  const auto address = reinterpret_cast<std::uintptr_t>(from) + ahead * sizeof(double);
  __builtin_prefetch(reinterpret_cast<const void*>(address), 0, 2);
}

// Not inlined, since the compiler generates much code for it.
[[gnu::noinline]] void PackRows(const double* const* columns, std::size_t row, std::size_t end,
                                const double* means, double* packed) {
  for (; row < end; ++row) {
    for (std::size_t c = 0; c < kGroup; ++c) packed[row * kGroup + c] = columns[c][row] - means[c];
  }
}

// The part of a column in a block is too short for the processor to detect that it continues, so
// this loop prefetches the data after the next block.
void PackDeviations(const double* const* columns, std::size_t rows, const double* means,
                    double* packed) {
  constexpr std::size_t kLine = 8;
  constexpr std::size_t kAhead = 256;
  const double* starts[kGroup];
#pragma GCC unroll 4
  for (std::size_t c = 0; c < kGroup; ++c) starts[c] = columns[c];
  Vector mean[kParts];
#pragma GCC unroll 4
  for (std::size_t v = 0; v < kParts; ++v) mean[v] = Load(means + v * kWidth);
  const std::size_t lines_end = rows - rows % kLine;
  for (std::size_t r = 0; r < lines_end; r += kLine) {
#pragma GCC unroll 4
    for (std::size_t c = 0; c < kGroup; ++c) Prefetch(starts[c] + r, kAhead);
#pragma GCC unroll 4
    for (std::size_t part = 0; part < kLine; part += kWidth) {
#pragma GCC unroll 4
      for (std::size_t v = 0; v < kParts; ++v) {
        Vector row[kWidth];
        LoadRows(starts + v * kWidth, r + part, row);
#pragma GCC unroll 4
        for (std::size_t t = 0; t < kWidth; ++t)
          Store(packed + (r + part + t) * kGroup + v * kWidth, row[t] - mean[v]);
      }
    }
  }
  if (lines_end < rows) PackRows(columns, lines_end, rows, means, packed);
}

/// Makes the compiler compute the value here, not before or after others that are placed in this
/// way.
inline void Place(Vector& value) { asm volatile("" : "+x"(value)); }

inline void AddPlaced(Vector& sum, Vector value) {
  sum += value;
  Place(sum);
}

/// The products of a group with kGroups others, of which each has kVectors vectors. Multiplications
/// and additions are placed by hand: the processor has separate units for them, and the compiler's
/// order is up to a sixth slower.
template <std::size_t kGroups, std::size_t kVectors>
void AddTile(const double* a, const double* const* b, std::size_t rows, double* products,
             std::size_t stride) {
  constexpr std::size_t kColumns = kGroups * kVectors;
  const double* starts[kGroups];
  for (std::size_t g = 0; g < kGroups; ++g) starts[g] = b[g];
  Vector sum[kGroup][kColumns];
#pragma GCC unroll 4
  for (std::size_t i = 0; i < kGroup; ++i) {
#pragma GCC unroll 4
    for (std::size_t v = 0; v < kColumns; ++v) sum[i][v] = Load(products + i * stride + v * kWidth);
  }
  for (std::size_t r = 0; r < rows * kGroup; r += kGroup) {
    const auto product = [&](std::size_t i, std::size_t v) {
      Vector value = All(a[r + i]) * Load(starts[v / kVectors] + r + v % kVectors * kWidth);
      Place(value);
      return value;
    };
    if constexpr (kColumns < 3) {  // the products of a column, then the sums of the previous column
      Vector products_of[kGroup][kColumns];
#pragma GCC unroll 8
      for (std::size_t i = 0; i <= kGroup; ++i) {
#pragma GCC unroll 2
        for (std::size_t v = 0; v < kColumns && i < kGroup; ++v) products_of[i][v] = product(i, v);
#pragma GCC unroll 2
        for (std::size_t v = 0; v < kColumns && i > 0; ++v)
          AddPlaced(sum[i - 1][v], products_of[i - 1][v]);
      }
    } else {  // there are enough registers for two products
#pragma GCC unroll 4
      for (std::size_t i = 0; i < kGroup; ++i) {
        AddPlaced(sum[i][0], product(i, 0));
        const Vector second = product(i, 1);
        const Vector third = product(i, 2);
        AddPlaced(sum[i][1], second);
        AddPlaced(sum[i][2], third);
      }
    }
  }
#pragma GCC unroll 4
  for (std::size_t i = 0; i < kGroup; ++i) {
#pragma GCC unroll 4
    for (std::size_t v = 0; v < kColumns; ++v) Store(products + i * stride + v * kWidth, sum[i][v]);
  }
}

template <std::size_t kGroups>
void AddProducts(const double* a, const double* const* b, std::size_t rows, double* products,
                 std::size_t stride) {
  if constexpr (kParts == 1) {
    AddTile<kGroups, 1>(a, b, rows, products, stride);
  } else {  // more simultaneous sums than the processor has registers
    for (std::size_t g = 0; g < kGroups; ++g)
      AddTile<1, kParts>(a, b + g, rows, products + g * kGroup, stride);
  }
}

inline Mask BothPresent(Vector x, Vector y, Vector missing) {
  return (x != missing) & (y != missing);
}

void AddGappedValues(const double* packed, const double* y_values, std::size_t rows,
                     double missing_value, GappedPairs* pairs) {
  const Vector missing = All(missing_value);
  for (std::size_t v = 0; v < kGroup; v += kWidth) {
    Mask count;
    __builtin_memcpy(&count, pairs->count + v, sizeof count);
    Vector sum_x = Load(pairs->sum_x + v);
    Vector sum_y = Load(pairs->sum_y + v);
    for (std::size_t r = 0; r < rows; ++r) {
      const Vector x = Load(packed + r * kGroup + v);
      const Vector y = All(y_values[r]);
      const Mask present = BothPresent(x, y, missing);
      count -= present;
      // Adding 0 does not change a sum, since no sum is ever -0.
      sum_x += Masked(x, present);
      sum_y += Masked(y, present);
    }
    __builtin_memcpy(pairs->count + v, &count, sizeof count);
    Store(pairs->sum_x + v, sum_x);
    Store(pairs->sum_y + v, sum_y);
  }
}

void AddGappedDeviations(const double* packed, const double* y_values, std::size_t rows,
                         double missing_value, GappedPairs* pairs) {
  const Vector missing = All(missing_value);
  for (std::size_t v = 0; v < kGroup; v += kWidth) {
    const Vector mean_x = Load(pairs->mean_x + v);
    const Vector mean_y = Load(pairs->mean_y + v);
    Vector s1_x = Load(pairs->s1_x + v);
    Vector s2_x = Load(pairs->s2_x + v);
    Vector s1_y = Load(pairs->s1_y + v);
    Vector s2_y = Load(pairs->s2_y + v);
    Vector products = Load(pairs->products + v);
    for (std::size_t r = 0; r < rows; ++r) {
      const Vector x = Load(packed + r * kGroup + v);
      const Vector y = All(y_values[r]);
      const Mask present = BothPresent(x, y, missing);
      const Vector dx = Masked(x - mean_x, present);
      const Vector dy = Masked(y - mean_y, present);
      s1_x += dx;
      s2_x += dx * dx;
      s1_y += dy;
      s2_y += dy * dy;
      products += dx * dy;
    }
    Store(pairs->s1_x + v, s1_x);
    Store(pairs->s2_x + v, s2_x);
    Store(pairs->s1_y + v, s1_y);
    Store(pairs->s2_y + v, s2_y);
    Store(pairs->products + v, products);
  }
}

constexpr AssociationKernels kKernels = {SumColumns,
                                         PackDeviations,
                                         {AddProducts<1>, AddProducts<2>, AddProducts<3>},
                                         AddGappedValues,
                                         AddGappedDeviations};

}  // namespace
}  // namespace zavrel
