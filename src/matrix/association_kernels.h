#pragma once
// Sums over observations, four columns at a time, in a form for each instruction set. Every sum
// runs in observation order and nothing is fused, so that all forms give the same bits.

#include <cstddef>
#include <cstdint>

namespace zavrel {

/// Columns that are worked on together; "packed" columns lie row by row, kGroup values each.
inline constexpr std::size_t kGroup = 4;

/// Below this nothing that is summed here, or by the moment kernels, overflows.
inline constexpr double kModerateLimit = 1e70;
/// When all are 0 or at least this, nothing underflows: a deviation that is not 0 is above 1e-76,
/// and the moment kernels take its fourth power.
inline constexpr double kModerateFloor = 1e-50;

/// The deviations of a packed group, summed as the moment kernels do: every other observation has
/// sums of its own.
struct DeviationSums {
  double s1[2][kGroup];
  double s2[2][kGroup];
};

/// The pairs of a packed group's columns with one more column, over the observations that both
/// have. Means come first; the rest is of deviations from them.
struct GappedPairs {
  double mean_x[kGroup];
  double mean_y[kGroup];
  std::int64_t count[kGroup];
  double sum_x[kGroup];
  double sum_y[kGroup];
  /// The sums for the next observation, and those for the one after it.
  double s1_x[2][kGroup];
  double s2_x[2][kGroup];
  double s1_y[2][kGroup];
  double s2_y[2][kGroup];
  double products[kGroup];
};

struct AssociationKernels {
  /// Sums of `groups` (1 or 2) times kGroup columns. False when some value is not 0 or
  /// a number from kModerateFloor to below kModerateLimit in magnitude; then the sums mean nothing.
  bool (*sum_columns)(const double* const* columns, std::size_t groups, std::size_t rows,
                      double* sums);
  /// Packs deviations of kGroup columns from their means, from row `first` on, and adds them to
  /// `sums` unless that is null; an even number of rows before the last call.
  void (*pack_deviations)(const double* const* columns, std::size_t first, std::size_t rows,
                          const double* means, double* packed, DeviationSums* sums);
  /// products[i][j] += a[r][i] b[r][j] for packed groups; with a second group of columns,
  /// `b_next`, its products follow each row of those of b.
  void (*add_products)(const double* a, const double* b, const double* b_next, std::size_t rows,
                       double* products);
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
