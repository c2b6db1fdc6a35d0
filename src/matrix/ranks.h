#pragma once
// Ranks of observations, from 0; equal values the average of theirs.

#include <cstdint>
#include <span>

namespace zavrel {

/// The order of a series, from which all of it or a part can be ranked: for each place in ascending
/// order the position of the value that belongs there, with kBeginsTie set when the value is not
/// the one before. A not-a-number stands by its sign before or after all numbers and equals
/// nothing.
using RankOrder = std::span<std::uint32_t>;
inline constexpr std::uint32_t kBeginsTie = std::uint32_t{1} << 31;
/// The longest series whose order can be stated.
inline constexpr std::size_t kMostRanked = kBeginsTie;

/// `order` has as many elements as `values`, `scratch` twice as many; what it holds does not
/// matter. Linear in the count: a radix sort on the upper bits in which the values differ.
void OrderInto(std::span<const double> values, RankOrder order, std::span<std::uint64_t> scratch);

/// The ranks of the observations whose bits are set in `present`, among themselves, each at its
/// position; what is left at the other positions means nothing.
void RankPresentInto(std::span<const std::uint32_t> order, std::span<const std::uint64_t> present,
                     std::span<double> ranks);

/// The ranks of all.
void RankAllInto(std::span<const std::uint32_t> order, std::span<double> ranks);

}  // namespace zavrel
