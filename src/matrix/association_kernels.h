#pragma once
// Sums over observations, four columns at a time, in a form for each instruction set. Every sum
// runs in observation order and nothing is fused, so that all forms give the same bits.

#include <cstddef>
#include <cstdint>

namespace zavrel {

/// Columns that are worked on together; "packed" columns lie row by row, kGroup values each.
inline constexpr std::size_t kGroup = 4;
/// Groups that are summed at a time: enough streams for the processor to fetch ahead of all.
inline constexpr std::size_t kMostSummed = 4;
/// Groups that one more is multiplied with at a time.
inline constexpr std::size_t kMostGroups = 3;

/// Below this nothing that is summed here overflows.
inline constexpr double kModerateLimit = 1e70;
/// When all are 0 or at least this, nothing underflows: a deviation that is not 0 is above 1e-76.
inline constexpr double kModerateFloor = 1e-50;

/// The pairs of a packed group's columns with one more column, over the observations that both
/// have. Means come first; the rest is of deviations from them.
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
  /// Sums of `groups` (up to kMostSummed) times kGroup columns.
  void (*sum_columns)(const double* const* columns, std::size_t groups, std::size_t rows,
                      double* sums);
  /// Packs deviations of kGroup columns from their means.
  void (*pack_deviations)(const double* const* columns, std::size_t rows, const double* means,
                          double* packed);
  /// products[i][j] += a[r][i] b[r][j] for a packed group and 1, 2 or 3 others; `stride` from one
  /// row of products to the next.
  void (*add_products[kMostGroups])(const double* a, const double* const* b, std::size_t rows,
                                    double* products, std::size_t stride);
  /// Adds to counts and sums what both have: neither is `missing`.
  void (*add_gapped_values)(const double* packed, const double* y, std::size_t rows, double missing,
                            GappedPairs* pairs);
  /// Adds to the sums of deviations.
  void (*add_gapped_deviations)(const double* packed, const double* y, std::size_t rows,
                                double missing, GappedPairs* pairs);
};

const AssociationKernels& BaselineAssociationKernels() noexcept;
/// To be called only where the processor has AVX2.
const AssociationKernels& Avx2AssociationKernels() noexcept;
/// The fastest form that this processor can run.
const AssociationKernels& ChosenAssociationKernels() noexcept;

}  // namespace zavrel
