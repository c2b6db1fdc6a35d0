#pragma once
// Pairs of variables of which at least one has gaps. Each pair has its own observations, means and
// standard deviations.

#include <span>

#include "matrix/pair_value.h"
#include "matrix/scanned_variable.h"
#include "numbers/double_matrix.h"
#include "platform/block_pool.h"

namespace zavrel {

/// Values of all pairs of moderate variables with gaps. Only blocks that stay in the fastest cache
/// are copied; 0 is added for a missing observation. True if an operation overflowed or
/// underflowed: some variable was not moderate, and the values are meaningless.
bool CalculateModerateGappedPairs(std::span<const ScannedVariable> variables, PairOptions options,
                                  DoubleMatrix& matrix);

/// Values of the pairs with gaps for variables of any kind: all pairs or, with `immoderate_only`,
/// those that CalculateModerateGappedPairs omits. With `orders`, one for each variable, uses ranks.
/// Copies the observations of each pair together.
void CalculateCompactedPairs(std::span<const ScannedVariable> variables,
                             std::span<const BlockArray<std::uint32_t>> orders,
                             bool immoderate_only, PairOptions options, DoubleMatrix& matrix);

}  // namespace zavrel
