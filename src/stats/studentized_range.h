#pragma once
// The studentized range: the range of `means` independent standard normal variables divided by an
// independent estimate of their standard deviation with `df` degrees of freedom.

#include <cstdint>

namespace zavrel {

struct StudentizedRangeResult {
  double value = 0;
  bool failed = false;
  /// How often the probability was computed on the way.
  int evaluations = 0;
};

/// The probability that the studentized range does not exceed q: R. E. Lund and J. R. Lund,
/// "Algorithm AS 190: Probabilities and upper quantiles for the studentized range", Applied
/// Statistics 32 (1983), with its step sizes and stopping limits. What these leave out of the
/// integral is the result's error: up to 20 means up to 1e-3 from 2 to 120 degrees of freedom
/// and 3e-3 for one, for 100 means up to 7e-3 and 2e-2. More than 120 degrees count as infinitely
/// many, which for 20 means is off by 2e-2 at 121 and by 5e-3 at 500, for 100 means by twice that.
/// The sum is not cut off at 1.
///
/// q <= 0 gives 0. Fails, with value 0, for df < 1 or means < 2.
StudentizedRangeResult StudentizedRangeProbability(double q, std::int32_t df, std::int32_t means);

/// The q whose probability (as computed above) is p, by bisection: a p of 0 gives 0. Fails with
/// value 0 for p < 0, p >= 1, df < 1, means < 2 and where no bracket of p is found (a p so near 1
/// that the starting values break down among them); with the value reached where the probability
/// jumps across p, missing it by more than 1e-4 of p.
StudentizedRangeResult StudentizedRangeQuantile(double p, std::int32_t df, std::int32_t means);

}  // namespace zavrel
