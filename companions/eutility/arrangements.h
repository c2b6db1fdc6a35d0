#pragma once
// All ways to assign the ranks of a sample to groups.

#include <cstdint>
#include <span>

namespace EUtility {

/// True if the groups are few and small enough to enumerate their arrangements. Every size is at
/// least 1.
bool CanEnumerate(std::span<const std::int32_t> sizes);

/// The share of the arrangements whose sum of (rank sum)^2 / size is at least the observed one.
/// `tied` holds the sizes of the groups of equal values, starting at the smallest value, and
/// `rank_sums` the observed sums. Throws std::bad_alloc.
double ShareAtLeast(std::span<const std::int32_t> sizes, std::span<const std::uint32_t> tied,
                    std::span<const double> rank_sums);

}  // namespace EUtility
