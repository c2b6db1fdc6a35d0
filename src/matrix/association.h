#pragma once
// Covariances and correlations of several variables.

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "matrix/association_kernels.h"
#include "matrix/pair_value.h"
#include "numbers/double_matrix.h"

namespace zavrel {

/// A variable in observation order. A value may be the missing-value marker or carry the error of
/// the cell that it comes from (numbers/error_double.h).
using VariableColumn = std::span<const double>;

struct AssociationOptions {
  PairOptions pair{};
  bool use_ranks = false;
  bool listwise_deletion = false;
};

struct AssociationResult {
  /// k x k for k variables, exactly symmetric. An entry that cannot be computed is a condition: no
  /// data (too few pairs, or a variable without a standard deviation), too few (no spread in a
  /// correlation), not finite.
  DoubleMatrix matrix;
  /// The cell error that ended the call; `matrix` then means nothing.
  std::optional<std::int32_t> error{};
};

/// The covariance of each pair of variables, s / (n - 1) in the sample form and s / n without it,
/// s the sum of (x - mean x)(y - mean y) in observation order; or, for a correlation, that divided
/// by both standard deviations: Pearson's coefficient whatever the divisor, in -1..1, and 1 for a
/// variable and itself. With `use_ranks` the
/// values are replaced by their ranks first, ties by the average of theirs, which gives Spearman's.
///
/// With `listwise_deletion` an observation with a missing value in any variable is left out of all
/// pairs; there are as many observations as the first variable has, and a shorter variable misses
/// the rest. Without, it is left out of the pairs of that variable only, each pair as long as the
/// shorter of its two. A cell error met on the way ends the call: listwise row by row, within a row
/// by variable; else pair by pair (j, then i <= j), row by row, j's value before i's.
///
/// Any other not-a-number is a value like others: no pair of its variable has a finite one. In
/// ranks it stands by its sign before or after all numbers and equals nothing.
///
/// A sum that overflows is computed again with more range. Results do not depend on the processor:
/// every sum runs in observation order and no product is fused.
AssociationResult CalculateAssociationMatrix(
    const AssociationOptions& options, std::span<const VariableColumn> variables,
    const AssociationKernels& kernels = ChosenAssociationKernels());

}  // namespace zavrel
