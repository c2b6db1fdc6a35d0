#pragma once
// Ranks of observations, starting at 0; equal values get their average rank.

#include <cstdint>
#include <span>

namespace zavrel {

/// The order of a series, from which the whole series or a part can be ranked: for each place in
/// ascending order, the position of the value at this place, with kBeginsTie set if the value
/// differs from the previous one. A not-a-number comes before or after all numbers by its sign and
/// equals no other value.
using RankOrder = std::span<std::uint32_t>;
inline constexpr std::uint32_t kBeginsTie = std::uint32_t{1} << 31;
/// The longest series whose order can be represented.
inline constexpr std::size_t kMostRanked = kBeginsTie;

/// `order` has as many elements as `values`, and `scratch` twice as many; the contents of `scratch`
/// do not matter. Linear in the count: a radix sort on the upper bits in which the values differ.
void OrderInto(std::span<const double> values, RankOrder order, std::span<std::uint64_t> scratch);

/// The ranks, among themselves, of the observations whose bits are set in `present`, each at its
/// position; the values at other positions are meaningless.
void RankPresentInto(std::span<const std::uint32_t> order, std::span<const std::uint64_t> present,
                     std::span<double> ranks);

/// The ranks of all observations.
void RankAllInto(std::span<const std::uint32_t> order, std::span<double> ranks);

}  // namespace zavrel
