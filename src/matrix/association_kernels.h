#pragma once
// Sums over observations, several columns at a time, with the processor's widest vectors. Every
// sum runs in observation order and nothing is fused, so all processors give the same bits.

#include <cstddef>
#include <cstdint>
#include <span>

namespace zavrel {

/// The number of columns that are packed together.
inline constexpr std::size_t kGroup = 4;
/// The number of groups that are summed at a time. The processor can still prefetch this many
/// streams.
inline constexpr std::size_t kMostSummed = 4;
/// The number of columns that are paired with another one at a time: the doubles of the widest
/// vector.
inline constexpr std::size_t kLanes = 8;

/// Below this limit, no sum here overflows.
inline constexpr double kModerateLimit = 1e70;
/// If all values are 0 or at least this, nothing underflows: a deviation other than 0 exceeds
/// 1e-76.
inline constexpr double kModerateFloor = 1e-50;

/// "Packed" columns are stored row by row, `stride` doubles apart.
struct Packed {
  double* values;
  std::size_t stride;
};

/// Sums of up to kMostSummed `groups` of kGroup columns each.
void SumColumns(const double* const* columns, std::size_t groups, std::size_t rows, double* sums);

/// Packs the deviations of kGroup columns from their means.
void PackDeviations(const double* const* columns, std::size_t rows, const double* means,
                    Packed packed);

/// sums[i][j] += a[r][i] b[r][j] for kGroup columns of a and `columns` of b, a multiple of kGroup.
/// The stride is that of both. Reads, but does not use, up to kLanes - kGroup values after those of
/// b.
void AddProducts(const double* a, Packed b, std::size_t rows, std::size_t columns, double* sums,
                 std::size_t sums_stride);

/// The pairs of kLanes packed columns x with another column y, over their common observations. The
/// means are computed first, and everything else from deviations.
struct GappedPairs {
  double mean_x[kLanes];
  double mean_y[kLanes];
  double sum_x[kLanes];
  double sum_y[kLanes];
  double s1_x[kLanes];
  double s2_x[kLanes];
  double s1_y[kLanes];
  double s2_y[kLanes];
  double products[kLanes];
};
/// kLanes packed columns, and others of as many rows. Of the packed ones, the first `lanes` are
/// wanted.
struct GappedColumns {
  const double* packed;
  std::size_t lanes;
  const double* const* others;
  std::size_t other_count;
  std::size_t rows;
  double missing;
};

/// Adds the observations in which neither value is missing to the sums of the values, with a
/// GappedPairs for each of the others.
void AddGappedValues(const GappedColumns& columns, GappedPairs* pairs);
/// Adds them to the sums of deviations.
void AddGappedDeviations(const GappedColumns& columns, GappedPairs* pairs);

/// Sets the bit of each value that is not missing, 64 to a word; `present` holds zeros. Returns
/// whether all of these values are 0 or from kModerateFloor to below kModerateLimit in magnitude.
bool MarkPresent(const double* values, std::size_t count, double missing, std::uint64_t* present);

/// How many bits are set in both of two sets of words of equal size.
std::size_t CountCommonBits(std::span<const std::uint64_t> x, std::span<const std::uint64_t> y);

}  // namespace zavrel
