#pragma once
// Joint ranks of several samples.

#include <cstdint>
#include <span>
#include <vector>

namespace zavrel {

struct RankSums {
  double count = 0;                        // values of all samples
  double tied_groups = 0;                  // groups of two or more equal values
  double tie_correction = 0;               // sum of t^3 - t over the groups of t equal values
  std::vector<double> sums;                // of the ranks of each sample
  std::vector<std::uint32_t> group_sizes;  // of equal values, from the smallest value on
};

/// Ranks the values of all samples, starting with 1 for the smallest; equal values share the mean
/// of their ranks. -0 equals +0; not-a-numbers are not allowed. A sample may be empty. The group
/// sizes are listed only on request. Throws std::bad_alloc.
RankSums RankTogether(std::span<const std::span<const double>> samples, bool list_groups = false);

}  // namespace zavrel
