#include "matrix/association_kernels.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "matrix/association_kernels.cpp"
#include <hwy/cache_control.h>
#include <hwy/foreach_target.h>
// After foreach_target.h, which sets what it defines.
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace zavrel::HWY_NAMESPACE {
namespace {

namespace hn = hwy::HWY_NAMESPACE;

/// Vectors of a part of a group, or of all of it.
using GroupTag = hn::CappedTag<double, kGroup>;
constexpr std::size_t kGroupWidth = hn::MaxLanes(GroupTag());
constexpr std::size_t kGroupParts = kGroup / kGroupWidth;
using GroupVector = hn::Vec<GroupTag>;

using Tag = hn::CappedTag<double, kLanes>;
constexpr std::size_t kWidth = hn::MaxLanes(Tag());
using Vector = hn::Vec<Tag>;

/// Each vector holds a row: its values in kGroupWidth columns.
HWY_INLINE void LoadRows(const double* const* columns, std::size_t first,
                         GroupVector (&rows)[kGroupWidth]) {
  const GroupTag d;
#if HWY_TARGET == HWY_SCALAR
  rows[0] = hn::LoadU(d, columns[0] + first);
#else
  if constexpr (kGroupWidth == 4) {
    // Loading halves reduces the work to one shuffle per row.
    const hn::Half<GroupTag> half;
    for (std::size_t row = 0; row < kGroupWidth; row += 2) {
      const GroupVector a = Combine(d, hn::LoadU(half, columns[2] + first + row),
                                    hn::LoadU(half, columns[0] + first + row));
      const GroupVector b = Combine(d, hn::LoadU(half, columns[3] + first + row),
                                    hn::LoadU(half, columns[1] + first + row));
      rows[row] = hn::InterleaveLower(d, a, b);
      rows[row + 1] = hn::InterleaveUpper(d, a, b);
    }
  } else {
    const GroupVector a = hn::LoadU(d, columns[0] + first);
    const GroupVector b = hn::LoadU(d, columns[1] + first);
    rows[0] = hn::InterleaveLower(d, a, b);
    rows[1] = hn::InterleaveUpper(d, a, b);
  }
#endif
}

template <std::size_t kGroups>
void SumGroups(const double* const* columns, std::size_t rows, double* sums) {
  constexpr std::size_t kVectors = kGroups * kGroupParts;
  constexpr std::size_t kColumns = kGroups * kGroup;
  const GroupTag d;
  const double* starts[kColumns];
  for (std::size_t c = 0; c < kColumns; ++c) starts[c] = columns[c];
  GroupVector sum[kVectors];
  for (GroupVector& s : sum) s = hn::Zero(d);
  const std::size_t vectors_end = rows - rows % kGroupWidth;
  for (std::size_t r = 0; r < vectors_end; r += kGroupWidth) {
    for (std::size_t v = 0; v < kVectors; ++v) {
      GroupVector row[kGroupWidth];
      LoadRows(starts + v * kGroupWidth, r, row);
      for (const GroupVector& values : row) sum[v] = hn::Add(sum[v], values);
    }
  }
  for (std::size_t v = 0; v < kVectors; ++v) hn::StoreU(sum[v], d, sums + v * kGroupWidth);
  for (std::size_t c = 0; c < kColumns; ++c) {
    for (std::size_t r = vectors_end; r < rows; ++r) sums[c] += columns[c][r];
  }
}

void Sum(const double* const* columns, std::size_t groups, std::size_t rows, double* sums) {
  constexpr decltype(&SumGroups<1>) kForms[kMostSummed] = {SumGroups<1>, SumGroups<2>, SumGroups<3>,
                                                           SumGroups<4>};
  kForms[groups - 1](columns, rows, sums);
}

/// Prefetches data some values ahead, possibly beyond the end.
HWY_INLINE void PrefetchAhead(const double* from, std::size_t ahead) {
  const auto address = reinterpret_cast<std::uintptr_t>(from) + ahead * sizeof(double);
  hwy::Prefetch(reinterpret_cast<const double*>(address));
}

// The part of a column in a block is too short for the processor to detect that it continues, so
// this loop prefetches the data after the next block.
void Pack(const double* const* columns, std::size_t rows, const double* means, Packed packed) {
  constexpr std::size_t kLine = 8;
  constexpr std::size_t kAhead = 256;
  const GroupTag d;
  const double* starts[kGroup];
  for (std::size_t c = 0; c < kGroup; ++c) starts[c] = columns[c];
  GroupVector mean[kGroupParts];
  for (std::size_t v = 0; v < kGroupParts; ++v) mean[v] = hn::LoadU(d, means + v * kGroupWidth);
  const std::size_t lines_end = rows - rows % kLine;
  double* to = packed.values;
  for (std::size_t r = 0; r < lines_end; r += kLine) {
    for (const double* start : starts) PrefetchAhead(start + r, kAhead);
    for (std::size_t part = 0; part < kLine; part += kGroupWidth) {
      for (std::size_t v = 0; v < kGroupParts; ++v) {
        GroupVector row[kGroupWidth];
        LoadRows(starts + v * kGroupWidth, r + part, row);
        for (std::size_t t = 0; t < kGroupWidth; ++t)
          hn::StoreU(hn::Sub(row[t], mean[v]), d, to + t * packed.stride + v * kGroupWidth);
      }
      to += kGroupWidth * packed.stride;
    }
  }
  for (std::size_t r = lines_end; r < rows; ++r, to += packed.stride) {
    for (std::size_t c = 0; c < kGroup; ++c) to[c] = columns[c][r] - means[c];
  }
}

/// The last vector of a tile. Only the widest can be longer than what is left.
HWY_INLINE Vector LoadLast(const double* from, hn::Mask<Tag> last) {
  const Tag d;
  if constexpr (kWidth > kGroup) return hn::MaskedLoad(last, d, from);
  return hn::LoadU(d, from);
}
HWY_INLINE void StoreLast(Vector value, hn::Mask<Tag> last, double* to) {
  const Tag d;
  if constexpr (kWidth > kGroup) {
    hn::BlendedStore(value, last, d, to);
  } else {
    hn::StoreU(value, d, to);
  }
}

/// The products of a group with kVectors vectors, held in registers. Only `columns` of these are
/// loaded and stored.
template <std::size_t kVectors>
void AddTile(const double* a, Packed b, std::size_t rows, std::size_t columns, double* sums,
             std::size_t sums_stride) {
  const Tag d;
  const auto last = hn::FirstN(d, columns - (kVectors - 1) * kWidth);
  const auto place = [&](std::size_t i, std::size_t v) {
    return sums + i * sums_stride + v * kWidth;
  };
  Vector sum[kGroup][kVectors];
  for (std::size_t i = 0; i < kGroup; ++i) {
    for (std::size_t v = 0; v + 1 < kVectors; ++v) sum[i][v] = hn::LoadU(d, place(i, v));
    sum[i][kVectors - 1] = LoadLast(place(i, kVectors - 1), last);
  }
  const double* from = b.values;
  for (std::size_t r = 0; r < rows; ++r, a += b.stride, from += b.stride) {
    Vector row[kVectors];
    for (std::size_t v = 0; v < kVectors; ++v) row[v] = hn::LoadU(d, from + v * kWidth);
    for (std::size_t i = 0; i < kGroup; ++i) {
      const Vector factor = hn::Set(d, a[i]);
      for (std::size_t v = 0; v < kVectors; ++v)
        sum[i][v] = hn::Add(sum[i][v], hn::Mul(factor, row[v]));
    }
  }
  for (std::size_t i = 0; i < kGroup; ++i) {
    for (std::size_t v = 0; v + 1 < kVectors; ++v) hn::StoreU(sum[i][v], d, place(i, v));
    StoreLast(sum[i][kVectors - 1], last, place(i, kVectors - 1));
  }
}

void Multiply(const double* a, Packed b, std::size_t rows, std::size_t columns, double* sums,
              std::size_t sums_stride) {
  // With a row of each and a product, a tile fills the 32 registers of the widest vectors or the 16
  // of others.
  constexpr std::size_t kMost = kWidth == kLanes ? 4 : 3;
  constexpr decltype(&AddTile<1>) kTiles[] = {AddTile<1>, AddTile<2>, AddTile<3>, AddTile<kMost>};
  while (columns > 0) {
    const std::size_t vectors = (columns + kWidth - 1) / kWidth;
    const std::size_t tiles = (vectors + kMost - 1) / kMost;
    const std::size_t taken = (vectors + tiles - 1) / tiles;
    const std::size_t width = taken * kWidth < columns ? taken * kWidth : columns;
    kTiles[taken - 1](a, b, rows, width, sums, sums_stride);
    b.values += width;
    sums += width;
    columns -= width;
  }
}

/// Of kOthers columns at a time, since a single sum waits for itself.
template <std::size_t kOthers>
struct GappedRow {
  Vector x;
  Vector y[kOthers];
  hn::Mask<Tag> present[kOthers];

  GappedRow(const GappedColumns& columns, const double* const* others, std::size_t row,
            std::size_t lane) {
    const Tag d;
    const Vector missing = hn::Set(d, columns.missing);
    x = hn::LoadU(d, columns.packed + row * kLanes + lane);
    const auto x_present = hn::Ne(x, missing);
    for (std::size_t p = 0; p < kOthers; ++p) {
      y[p] = hn::Set(d, others[p][row]);
      present[p] = hn::And(x_present, hn::Ne(y[p], missing));
    }
  }
};

HWY_INLINE Vector AddPresent(Vector sum, Vector value, hn::Mask<Tag> present) {
  // The widest vectors can add under a mask.
  if constexpr (kWidth == kLanes) return hn::IfThenElse(present, hn::Add(sum, value), sum);
  // Adding 0 does not change a sum, since no sum is ever -0.
  return hn::Add(sum, hn::IfThenElseZero(present, value));
}

template <std::size_t kOthers>
void ValuesOf(const GappedColumns& columns, const double* const* others, GappedPairs* pairs) {
  const Tag d;
  for (std::size_t v = 0; v < columns.lanes; v += kWidth) {
    Vector sum_x[kOthers], sum_y[kOthers];
    for (std::size_t p = 0; p < kOthers; ++p) {
      sum_x[p] = hn::LoadU(d, pairs[p].sum_x + v);
      sum_y[p] = hn::LoadU(d, pairs[p].sum_y + v);
    }
    for (std::size_t r = 0; r < columns.rows; ++r) {
      const GappedRow<kOthers> row(columns, others, r, v);
      for (std::size_t p = 0; p < kOthers; ++p) {
        sum_x[p] = AddPresent(sum_x[p], row.x, row.present[p]);
        sum_y[p] = AddPresent(sum_y[p], row.y[p], row.present[p]);
      }
    }
    for (std::size_t p = 0; p < kOthers; ++p) {
      hn::StoreU(sum_x[p], d, pairs[p].sum_x + v);
      hn::StoreU(sum_y[p], d, pairs[p].sum_y + v);
    }
  }
}

template <std::size_t kOthers>
void DeviationsOf(const GappedColumns& columns, const double* const* others, GappedPairs* pairs) {
  const Tag d;
  for (std::size_t v = 0; v < columns.lanes; v += kWidth) {
    Vector mean_x[kOthers], mean_y[kOthers];
    Vector s1_x[kOthers], s2_x[kOthers], s1_y[kOthers], s2_y[kOthers], products[kOthers];
    for (std::size_t p = 0; p < kOthers; ++p) {
      mean_x[p] = hn::LoadU(d, pairs[p].mean_x + v);
      mean_y[p] = hn::LoadU(d, pairs[p].mean_y + v);
      s1_x[p] = hn::LoadU(d, pairs[p].s1_x + v);
      s2_x[p] = hn::LoadU(d, pairs[p].s2_x + v);
      s1_y[p] = hn::LoadU(d, pairs[p].s1_y + v);
      s2_y[p] = hn::LoadU(d, pairs[p].s2_y + v);
      products[p] = hn::LoadU(d, pairs[p].products + v);
    }
    for (std::size_t r = 0; r < columns.rows; ++r) {
      const GappedRow<kOthers> row(columns, others, r, v);
      for (std::size_t p = 0; p < kOthers; ++p) {
        const Vector dx = hn::IfThenElseZero(row.present[p], hn::Sub(row.x, mean_x[p]));
        const Vector dy = hn::IfThenElseZero(row.present[p], hn::Sub(row.y[p], mean_y[p]));
        s1_x[p] = hn::Add(s1_x[p], dx);
        s2_x[p] = hn::Add(s2_x[p], hn::Mul(dx, dx));
        s1_y[p] = hn::Add(s1_y[p], dy);
        s2_y[p] = hn::Add(s2_y[p], hn::Mul(dy, dy));
        products[p] = hn::Add(products[p], hn::Mul(dx, dy));
      }
    }
    for (std::size_t p = 0; p < kOthers; ++p) {
      hn::StoreU(s1_x[p], d, pairs[p].s1_x + v);
      hn::StoreU(s2_x[p], d, pairs[p].s2_x + v);
      hn::StoreU(s1_y[p], d, pairs[p].s1_y + v);
      hn::StoreU(s2_y[p], d, pairs[p].s2_y + v);
      hn::StoreU(products[p], d, pairs[p].products + v);
    }
  }
}

void GappedValues(const GappedColumns& columns, GappedPairs* pairs) {
  constexpr std::size_t kMost = kWidth == kLanes ? 4 : 2;  // as many as there are registers for
  constexpr decltype(&ValuesOf<1>) kForms[] = {ValuesOf<1>, ValuesOf<2>, ValuesOf<3>,
                                               ValuesOf<kMost>};
  std::size_t p = 0;
  while (p < columns.other_count) {
    const std::size_t left = columns.other_count - p;
    const std::size_t taken = left < kMost ? left : kMost;
    kForms[taken - 1](columns, columns.others + p, pairs + p);
    p += taken;
  }
}

void GappedDeviations(const GappedColumns& columns, GappedPairs* pairs) {
  std::size_t p = 0;
  for (; p + 2 <= columns.other_count; p += 2)
    DeviationsOf<2>(columns, columns.others + p, pairs + p);
  if (p < columns.other_count) DeviationsOf<1>(columns, columns.others + p, pairs + p);
}

std::size_t CountBoth(const std::uint64_t* x, const std::uint64_t* y, std::size_t words) {
  std::size_t count = 0;
  for (std::size_t w = 0; w < words; ++w) count += hwy::PopCount(x[w] & y[w]);
  return count;
}

bool Mark(const double* values, std::size_t count, double missing, std::uint64_t* present) {
  const Tag d;
  const Vector gap = hn::Set(d, missing);
  auto immoderate = hn::FirstN(d, 0);
  for (std::size_t i = 0; i < count; i += kWidth) {
    double ending[kWidth];
    const double* from = values + i;
    if (count - i < kWidth) {
      for (std::size_t k = 0; k < kWidth; ++k) ending[k] = k < count - i ? from[k] : missing;
      from = ending;
    }
    const Vector value = hn::LoadU(d, from);
    const auto is_present = hn::Not(hn::Eq(value, gap));  // also a not-a-number
    const Vector size = hn::Abs(value);
    const auto is_moderate =
        hn::And(hn::Lt(size, hn::Set(d, kModerateLimit)),
                hn::Or(hn::Ge(size, hn::Set(d, kModerateFloor)), hn::Eq(size, hn::Zero(d))));
    immoderate = hn::Or(immoderate, hn::AndNot(is_moderate, is_present));
    std::uint8_t bits[8] = {};
    hn::StoreMaskBits(d, is_present, bits);
    present[i / 64] |= std::uint64_t{bits[0]} << (i % 64);
  }
  return hn::AllFalse(d, immoderate);
}

}  // namespace
}  // namespace zavrel::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace zavrel {
namespace {

HWY_EXPORT(Sum);
HWY_EXPORT(Pack);
HWY_EXPORT(Multiply);
HWY_EXPORT(GappedValues);
HWY_EXPORT(GappedDeviations);
HWY_EXPORT(Mark);
HWY_EXPORT(CountBoth);

}  // namespace

void SumColumns(const double* const* columns, std::size_t groups, std::size_t rows, double* sums) {
  HWY_DYNAMIC_DISPATCH(Sum)(columns, groups, rows, sums);
}

void PackDeviations(const double* const* columns, std::size_t rows, const double* means,
                    Packed packed) {
  HWY_DYNAMIC_DISPATCH(Pack)(columns, rows, means, packed);
}

void AddProducts(const double* a, Packed b, std::size_t rows, std::size_t columns, double* sums,
                 std::size_t sums_stride) {
  HWY_DYNAMIC_DISPATCH(Multiply)(a, b, rows, columns, sums, sums_stride);
}

void AddGappedValues(const GappedColumns& columns, GappedPairs* pairs) {
  HWY_DYNAMIC_DISPATCH(GappedValues)(columns, pairs);
}

void AddGappedDeviations(const GappedColumns& columns, GappedPairs* pairs) {
  HWY_DYNAMIC_DISPATCH(GappedDeviations)(columns, pairs);
}

bool MarkPresent(const double* values, std::size_t count, double missing, std::uint64_t* present) {
  return HWY_DYNAMIC_DISPATCH(Mark)(values, count, missing, present);
}

std::size_t CountCommonBits(std::span<const std::uint64_t> x, std::span<const std::uint64_t> y) {
  return HWY_DYNAMIC_DISPATCH(CountBoth)(x.data(), y.data(), x.size());
}

}  // namespace zavrel
#endif
