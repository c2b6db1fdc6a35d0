#pragma once
// All ways of giving the ranks of a sample out to groups.

#include <cstdint>
#include <span>

namespace EUtility {

/// True when the groups are few and small enough for going through their arrangements. Every size
/// is at least 1.
bool CanEnumerate(std::span<const std::int32_t> sizes);

/// The share of the arrangements whose sum of (rank sum)^2 / size is at least the observed one.
/// `tied` are the sizes of the groups of equal values from the smallest value on, `rank_sums` the
/// observed sums. Throws std::bad_alloc.
double ShareAtLeast(std::span<const std::int32_t> sizes, std::span<const std::uint32_t> tied,
                    std::span<const double> rank_sums);

}  // namespace EUtility
