#pragma once
// The studentized range: the range of `means` independent standard normal variables divided by an
// independent estimate of their standard deviation with `df` degrees of freedom.

#include <cstdint>

namespace zavrel {

struct StudentizedRangeResult {
  double value = 0;
  bool failed = false;
  /// How often the probability was computed.
  int evaluations = 0;
};

/// The probability that the studentized range does not exceed q: R. E. Lund and J. R. Lund,
/// "Algorithm AS 190: Probabilities and upper quantiles for the studentized range", Applied
/// Statistics 32 (1983), with its step sizes and stopping limits. These leave out parts of the
/// integral, which causes the error of the result: for up to 20 means, up to 1e-3 from 2 to 120
/// degrees of freedom and 3e-3 for one; for 100 means, up to 7e-3 and 2e-2. More than 120 degrees
/// of freedom count as infinitely many; for 20 means, the error is then 2e-2 at 121 and 5e-3 at
/// 500, and for 100 means twice as much. The sum is not limited to 1.
///
/// q <= 0 gives 0. Fails, with value 0, for df < 1 or means < 2.
StudentizedRangeResult StudentizedRangeProbability(double q, std::int32_t df, std::int32_t means);

/// The q whose probability (as computed above) is p, by bisection; p = 0 gives 0. Fails with value
/// 0 for p < 0, p >= 1, df < 1, means < 2, and if no bracket of p is found (for example for a p so
/// near 1 that the starting values break down). Fails with the value reached if the probability
/// jumps across p and misses it by more than 1e-4 of p.
StudentizedRangeResult StudentizedRangeQuantile(double p, std::int32_t df, std::int32_t means);

}  // namespace zavrel
