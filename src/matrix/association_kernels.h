#pragma once
// Sums over observations, four columns at a time, in one version for each instruction set. Every
// sum runs in observation order and nothing is fused, so all versions give the same bits.

#include <cstddef>
#include <cstdint>

namespace zavrel {

/// The number of columns that are processed together. "Packed" columns are stored row by row, with
/// kGroup values in each row.
inline constexpr std::size_t kGroup = 4;
/// The number of groups that are summed at a time. The processor can still prefetch this many
/// streams.
inline constexpr std::size_t kMostSummed = 4;
/// The number of groups by which another group is multiplied at a time.
inline constexpr std::size_t kMostGroups = 3;

/// Below this limit, no sum here overflows.
inline constexpr double kModerateLimit = 1e70;
/// If all values are 0 or at least this, nothing underflows: a deviation other than 0 exceeds
/// 1e-76.
inline constexpr double kModerateFloor = 1e-50;

/// The pairs of a packed group's columns with another column, over their common observations. The
/// means are computed first, and everything else from deviations.
struct GappedPairs {
  double mean_x[kGroup];
  double mean_y[kGroup];
  std::int64_t count[kGroup];
  double sum_x[kGroup];
  double sum_y[kGroup];
  double s1_x[kGroup];
  double s2_x[kGroup];
  double s1_y[kGroup];
  double s2_y[kGroup];
  double products[kGroup];
};

struct AssociationKernels {
  /// Sums of up to kMostSummed `groups` of kGroup columns each.
  void (*sum_columns)(const double* const* columns, std::size_t groups, std::size_t rows,
                      double* sums);
  /// Packs the deviations of kGroup columns from their means.
  void (*pack_deviations)(const double* const* columns, std::size_t rows, const double* means,
                          double* packed);
  /// products[i][j] += a[r][i] b[r][j] for a packed group and 1, 2 or 3 others. `stride` is the
  /// distance between rows of products.
  void (*add_products[kMostGroups])(const double* a, const double* const* b, std::size_t rows,
                                    double* products, std::size_t stride);
  /// Adds the observations in which neither value is `missing` to counts and sums.
  void (*add_gapped_values)(const double* packed, const double* y, std::size_t rows, double missing,
                            GappedPairs* pairs);
  /// Adds to the sums of deviations.
  void (*add_gapped_deviations)(const double* packed, const double* y, std::size_t rows,
                                double missing, GappedPairs* pairs);
};

const AssociationKernels& BaselineAssociationKernels() noexcept;
/// May be called only if the processor has AVX2.
const AssociationKernels& Avx2AssociationKernels() noexcept;
/// The fastest version that this processor can run.
const AssociationKernels& ChosenAssociationKernels() noexcept;

}  // namespace zavrel
