#pragma once
// From the tails of a statistic to its p-value.

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

#include "contracts/nonparametric_tests.h"
#include "stats/normal.h"

namespace NonparametricTests {

inline constexpr double kRefused = std::numeric_limits<double>::quiet_NaN();

inline bool IsAlternative(std::int32_t alternative) {
  return alternative >= NPT_LESS && alternative <= NPT_GREATER;
}

/// The statistic, or the multiple of one half that it misses by 1e-7 at most. Rank sums are such
/// multiples, and arithmetic that leads to one may end a few units short of it; counted as it is,
/// it would lose a whole rank.
inline double Snapped(double statistic) {
  const double near = std::round(2 * statistic) / 2;
  return std::abs(statistic - near) <= 1e-7 ? near : statistic;
}

/// Of a statistic whose distribution is symmetric, at this distance from its mean. `lower` and
/// `upper` give the probabilities of one as small and as great; only the one that is needed is
/// computed.
template <class Lower, class Upper>
double PValue(std::int32_t alternative, double distance, Lower lower, Upper upper) {
  if (alternative == NPT_LESS) return lower();
  if (alternative == NPT_GREATER) return upper();
  return std::min(2 * (distance < 0 ? lower() : upper()), 1.0);
}

/// The same by the normal distribution.
inline double NormalPValue(std::int32_t alternative, double distance, double variance) {
  const double deviation = std::sqrt(variance);
  return PValue(
      alternative, distance, [&] { return zavrel::NormalUpperTail(-(distance + 0.5) / deviation); },
      [&] { return zavrel::NormalUpperTail((distance - 0.5) / deviation); });
}

}  // namespace NonparametricTests
