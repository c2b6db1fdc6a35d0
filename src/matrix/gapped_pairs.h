#pragma once
// Pairs of variables of which at least one has gaps: each pair has observations, means and standard
// deviations of its own.

#include <span>

#include "matrix/association_kernels.h"
#include "matrix/pair_value.h"
#include "matrix/scanned_variable.h"
#include "numbers/double_matrix.h"
#include "platform/block_pool.h"

namespace zavrel {

/// Values of all pairs with gaps of the moderate variables. Nothing is copied but blocks that stay
/// in the fastest cache: where an observation is missing, 0 is added. True when an operation
/// overflowed or underflowed: some variable was not moderate, and the values mean nothing.
bool CalculateModerateGappedPairs(std::span<const ScannedVariable> variables, PairOptions options,
                                  const AssociationKernels& kernels, DoubleMatrix& matrix);

/// Values of the pairs with gaps whatever the values are, all or, with `immoderate_only`, those
/// that CalculateModerateGappedPairs leaves out; of ranks when there are `orders`, one for each
/// variable. Each pair's observations are copied together.
void CalculateCompactedPairs(std::span<const ScannedVariable> variables,
                             std::span<const BlockArray<std::uint32_t>> orders,
                             bool immoderate_only, PairOptions options, DoubleMatrix& matrix);

}  // namespace zavrel
