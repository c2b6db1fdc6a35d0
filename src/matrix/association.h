#pragma once
// Covariances and correlations of several variables.

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "matrix/pair_value.h"
#include "numbers/double_matrix.h"

namespace zavrel {

/// A variable in observation order. A value may be the missing-value marker or encode the error of
/// its cell (numbers/error_double.h).
using VariableColumn = std::span<const double>;

struct AssociationOptions {
  PairOptions pair{};
  bool use_ranks = false;
  bool listwise_deletion = false;
};

struct AssociationResult {
  /// k x k for k variables, exactly symmetric. An entry that cannot be computed is a condition: no
  /// data (too few pairs, or a variable without a standard deviation), too few (no spread in a
  /// correlation), or not finite.
  DoubleMatrix matrix;
  /// The cell error that ended the call; `matrix` is then meaningless.
  std::optional<std::int32_t> error{};
};

/// The covariance of each pair of variables: s / (n - 1) in the sample form and s / n in the
/// population form, where s is the sum of (x - mean x)(y - mean y) in observation order. For a
/// correlation, the covariance is divided by both standard deviations, which gives Pearson's
/// coefficient in either form. It lies in -1..1 and is exactly 1 for a variable and itself. With
/// `use_ranks`, the values are first replaced by their ranks, ties
/// by their average rank, which gives Spearman's coefficient.
///
/// With `listwise_deletion`, an observation with a missing value in any variable is excluded from
/// all pairs. The number of observations is that of the first variable, and a shorter variable has
/// missing values at its end. Without listwise deletion, the observation is excluded only from the
/// pairs of that variable, and each pair is as long as the shorter of its two variables. A cell
/// error that is found ends the call. The search order is row by row and within a row by variable
/// (listwise), or pair by pair (j, then i <= j), row by row, j's value before i's.
///
/// Any other not-a-number counts as a value: no pair of its variable has a finite result. In ranks,
/// it comes before or after all numbers by its sign and equals no other value.
///
/// A sum that overflows is computed again with a wider range. Results do not depend on the
/// processor: every sum runs in observation order and no product is fused.
AssociationResult CalculateAssociationMatrix(const AssociationOptions& options,
                                             std::span<const VariableColumn> variables);

}  // namespace zavrel
