// The kernels for vectors of kWidth doubles; no include guard. Whoever includes this defines
// ZAV_VECTOR_WIDTH and gets them with internal linkage: compiled for two instruction sets, no
// function may be one that the linker keeps for both. For that reason nothing else is included
// that has inline functions.

#include "matrix/association_kernels.h"

namespace zavrel {
namespace {

constexpr std::size_t kWidth = ZAV_VECTOR_WIDTH;
constexpr std::size_t kParts = kGroup / kWidth;  // vectors of a group
typedef double Vector __attribute__((vector_size(kWidth * sizeof(double))));
typedef std::int64_t Mask __attribute__((vector_size(kWidth * sizeof(double))));

inline Vector Load(const double* from) {
  Vector value;
  __builtin_memcpy(&value, from, sizeof value);
  return value;
}

inline void Store(double* to, Vector value) { __builtin_memcpy(to, &value, sizeof value); }

inline Vector All(double value) { return value - Vector{}; }
inline Vector Masked(Vector value, Mask mask) { return (Vector)((Mask)value & mask); }

inline Vector Magnitude(Vector value) {
  constexpr std::int64_t kAllButSign = 0x7FFF'FFFF'FFFF'FFFF;
  return Masked(value, kAllButSign - Mask{});
}

// Where one side is a not-a-number the processor takes the second.
#if ZAV_VECTOR_WIDTH == 4
inline Vector Smaller(Vector a, Vector b) { return __builtin_ia32_minpd256(a, b); }
inline Vector Larger(Vector a, Vector b) { return __builtin_ia32_maxpd256(a, b); }
#else
inline Vector Smaller(Vector a, Vector b) { return __builtin_ia32_minpd(a, b); }
inline Vector Larger(Vector a, Vector b) { return __builtin_ia32_maxpd(a, b); }
#endif

/// The range of magnitudes, 0 and not-a-numbers left out.
struct MagnitudeRange {
  Vector smallest = All(kModerateLimit);
  Vector largest = Vector{};

  void Add(Vector value) {
    const Vector magnitude = Magnitude(value);
    largest = Larger(magnitude, largest);
    // The number next below; of 0 a not-a-number.
    smallest = Smaller((Vector)((Mask)magnitude - 1), smallest);
  }
  bool IsModerate(std::size_t lane) const {
    return largest[lane] < kModerateLimit && smallest[lane] >= kModerateFloor;
  }
};

/// A square of values, a column of it in each vector, gets a row in each.
inline void Transpose(Vector (&square)[kWidth]) {
#if ZAV_VECTOR_WIDTH == 4
  const Vector a = __builtin_shuffle(square[0], square[1], Mask{0, 4, 2, 6});
  const Vector b = __builtin_shuffle(square[0], square[1], Mask{1, 5, 3, 7});
  const Vector c = __builtin_shuffle(square[2], square[3], Mask{0, 4, 2, 6});
  const Vector d = __builtin_shuffle(square[2], square[3], Mask{1, 5, 3, 7});
  square[0] = __builtin_shuffle(a, c, Mask{0, 1, 4, 5});
  square[1] = __builtin_shuffle(b, d, Mask{0, 1, 4, 5});
  square[2] = __builtin_shuffle(a, c, Mask{2, 3, 6, 7});
  square[3] = __builtin_shuffle(b, d, Mask{2, 3, 6, 7});
#else
  const Vector a = __builtin_shuffle(square[0], square[1], Mask{0, 2});
  square[1] = __builtin_shuffle(square[0], square[1], Mask{1, 3});
  square[0] = a;
#endif
}

template <std::size_t kVectors>
bool SumColumns(const double* const* columns, std::size_t rows, double* sums) {
  Vector sum[kVectors] = {};
  MagnitudeRange ranges[2];  // two, as each waits for its last result
  std::size_t r = 0;
  for (; r + kWidth <= rows; r += kWidth) {
#pragma GCC unroll 8
    for (std::size_t v = 0; v < kVectors; ++v) {
      Vector square[kWidth];
#pragma GCC unroll 8
      for (std::size_t c = 0; c < kWidth; ++c) {
        square[c] = Load(columns[v * kWidth + c] + r);
        ranges[c % 2].Add(square[c]);
      }
      Transpose(square);
#pragma GCC unroll 8
      for (std::size_t t = 0; t < kWidth; ++t) sum[v] += square[t];
    }
  }
  for (std::size_t v = 0; v < kVectors; ++v) Store(sums + v * kWidth, sum[v]);
  bool all = true;
  for (std::size_t t = 0; t < kWidth; ++t)
    all = all && ranges[0].IsModerate(t) && ranges[1].IsModerate(t);
  for (; r < rows; ++r) {
    for (std::size_t c = 0; c < kVectors * kWidth; ++c) {
      sums[c] += columns[c][r];
      const double magnitude = __builtin_fabs(columns[c][r]);
      all = all && magnitude < kModerateLimit && (magnitude >= kModerateFloor || magnitude == 0);
    }
  }
  // A not-a-number stays in its sum.
  for (std::size_t c = 0; c < kVectors * kWidth; ++c) all = all && sums[c] == sums[c];
  return all;
}

bool SumGroups(const double* const* columns, std::size_t groups, std::size_t rows, double* sums) {
  if (groups == 2) return SumColumns<2 * kParts>(columns, rows, sums);
  return SumColumns<kParts>(columns, rows, sums);
}

/// Fetches what lies some values ahead; that may be nothing.
inline void Prefetch(const double* from, std::size_t ahead) {
  const auto address = reinterpret_cast<std::uintptr_t>(from) + ahead * sizeof(double);
  __builtin_prefetch(reinterpret_cast<const void*>(address), 0, 2);
}

// A block's stretch of a column is too short for the processor to see that it goes on, so the next
// but one is fetched meanwhile.
template <bool kSummed>
void PackGroup(const double* const* columns, std::size_t first, std::size_t rows,
               const double* means, double* packed, DeviationSums* sums) {
  constexpr std::size_t kLine = 8;
  constexpr std::size_t kAhead = 256;
  Vector s1[kParts][2] = {};
  Vector s2[kParts][2] = {};
  for (std::size_t v = 0; kSummed && v < kParts; ++v) {
    for (std::size_t parity = 0; parity < 2; ++parity) {
      s1[v][parity] = Load(sums->s1[parity] + v * kWidth);
      s2[v][parity] = Load(sums->s2[parity] + v * kWidth);
    }
  }
  std::size_t r = 0;
  for (; r + kWidth <= rows; r += kWidth) {
    if (r % kLine == 0) {
#pragma GCC unroll 4
      for (std::size_t c = 0; c < kGroup; ++c) Prefetch(columns[c] + first + r, kAhead);
    }
#pragma GCC unroll 8
    for (std::size_t v = 0; v < kParts; ++v) {
      const Vector mean = Load(means + v * kWidth);
      Vector square[kWidth];
#pragma GCC unroll 8
      for (std::size_t c = 0; c < kWidth; ++c)
        square[c] = Load(columns[v * kWidth + c] + first + r);
      Transpose(square);
#pragma GCC unroll 8
      for (std::size_t t = 0; t < kWidth; ++t) {
        const Vector d = square[t] - mean;
        Store(packed + (r + t) * kGroup + v * kWidth, d);
        if (kSummed) {
          s1[v][t % 2] += d;
          s2[v][t % 2] += d * d;
        }
      }
    }
  }
  for (std::size_t v = 0; kSummed && v < kParts; ++v) {
    for (std::size_t parity = 0; parity < 2; ++parity) {
      Store(sums->s1[parity] + v * kWidth, s1[v][parity]);
      Store(sums->s2[parity] + v * kWidth, s2[v][parity]);
    }
  }
  for (; r < rows; ++r) {
    for (std::size_t c = 0; c < kGroup; ++c) {
      const double d = columns[c][first + r] - means[c];
      packed[r * kGroup + c] = d;
      if (kSummed) {
        sums->s1[r % 2][c] += d;
        sums->s2[r % 2][c] += d * d;
      }
    }
  }
}

void PackDeviations(const double* const* columns, std::size_t first, std::size_t rows,
                    const double* means, double* packed, DeviationSums* sums) {
  if (sums != nullptr) {
    PackGroup<true>(columns, first, rows, means, packed, sums);
  } else {
    PackGroup<false>(columns, first, rows, means, packed, nullptr);
  }
}

/// b: kVectors vectors a row, the first kParts of each group from `b`, the next from `b_next`.
template <std::size_t kVectors>
void AddTile(const double* a, const double* b, const double* b_next, std::size_t rows,
             double* products, std::size_t stride) {
  Vector sum[kGroup][kVectors];
#pragma GCC unroll 4
  for (std::size_t i = 0; i < kGroup; ++i) {
#pragma GCC unroll 4
    for (std::size_t v = 0; v < kVectors; ++v) sum[i][v] = Load(products + i * stride + v * kWidth);
  }
  for (std::size_t r = 0; r < rows; ++r) {
    Vector y[kVectors];
#pragma GCC unroll 4
    for (std::size_t v = 0; v < kVectors; ++v)
      y[v] = Load(v < kParts ? b + v * kWidth : b_next + (v - kParts) * kWidth);
#pragma GCC unroll 4
    for (std::size_t i = 0; i < kGroup; ++i) {
      const Vector x = All(a[i]);
#pragma GCC unroll 4
      for (std::size_t v = 0; v < kVectors; ++v) sum[i][v] += x * y[v];
    }
    a += kGroup;
    b += kGroup;
    if (kVectors > kParts) b_next += kGroup;
  }
#pragma GCC unroll 4
  for (std::size_t i = 0; i < kGroup; ++i) {
#pragma GCC unroll 4
    for (std::size_t v = 0; v < kVectors; ++v) Store(products + i * stride + v * kWidth, sum[i][v]);
  }
}

void AddProducts(const double* a, const double* b, const double* b_next, std::size_t rows,
                 double* products) {
  if (b_next == nullptr) {
    AddTile<kParts>(a, b, nullptr, rows, products, kGroup);
  } else if (kParts == 1) {
    AddTile<2>(a, b, b_next, rows, products, 2 * kGroup);
  } else {  // more sums than a processor has registers for
    AddTile<kParts>(a, b, nullptr, rows, products, 2 * kGroup);
    AddTile<kParts>(a, b_next, nullptr, rows, products + kGroup, 2 * kGroup);
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
      // Adding 0 leaves a sum as it is: none is ever -0.
      sum_x += Masked(x, present);
      sum_y += Masked(y, present);
    }
    __builtin_memcpy(pairs->count + v, &count, sizeof count);
    Store(pairs->sum_x + v, sum_x);
    Store(pairs->sum_y + v, sum_y);
  }
}

/// A sum for every other observation that is present: where one is, the two change places.
struct AlternatingSum {
  Vector next;
  Vector other;

  void Add(Vector value, Mask present) {
    const Vector added = next + value;
    next = present ? other : added;
    other = present ? added : other;
  }
};

inline AlternatingSum LoadAlternating(const double (*sums)[kGroup], std::size_t v) {
  return {Load(sums[0] + v), Load(sums[1] + v)};
}

inline void StoreAlternating(double (*sums)[kGroup], std::size_t v, const AlternatingSum& sum) {
  Store(sums[0] + v, sum.next);
  Store(sums[1] + v, sum.other);
}

void AddGappedDeviations(const double* packed, const double* y_values, std::size_t rows,
                         double missing_value, GappedPairs* pairs) {
  const Vector missing = All(missing_value);
  for (std::size_t v = 0; v < kGroup; v += kWidth) {
    const Vector mean_x = Load(pairs->mean_x + v);
    const Vector mean_y = Load(pairs->mean_y + v);
    AlternatingSum s1_x = LoadAlternating(pairs->s1_x, v);
    AlternatingSum s2_x = LoadAlternating(pairs->s2_x, v);
    AlternatingSum s1_y = LoadAlternating(pairs->s1_y, v);
    AlternatingSum s2_y = LoadAlternating(pairs->s2_y, v);
    Vector products = Load(pairs->products + v);
    for (std::size_t r = 0; r < rows; ++r) {
      const Vector x = Load(packed + r * kGroup + v);
      const Vector y = All(y_values[r]);
      const Mask present = BothPresent(x, y, missing);
      const Vector dx = Masked(x - mean_x, present);
      const Vector dy = Masked(y - mean_y, present);
      s1_x.Add(dx, present);
      s2_x.Add(dx * dx, present);
      s1_y.Add(dy, present);
      s2_y.Add(dy * dy, present);
      products += dx * dy;
    }
    StoreAlternating(pairs->s1_x, v, s1_x);
    StoreAlternating(pairs->s2_x, v, s2_x);
    StoreAlternating(pairs->s1_y, v, s1_y);
    StoreAlternating(pairs->s2_y, v, s2_y);
    Store(pairs->products + v, products);
  }
}

constexpr AssociationKernels kKernels = {SumGroups, PackDeviations, AddProducts, AddGappedValues,
                                         AddGappedDeviations};

}  // namespace
}  // namespace zavrel
