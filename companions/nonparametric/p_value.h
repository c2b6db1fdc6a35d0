#pragma once
// Computes the p-value of a statistic from its tails.

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

/// The statistic, or a multiple of one half if it differs from it by at most 1e-7. Rank sums are
/// such multiples. Arithmetic may give a rank sum slightly too low, and without this correction it
/// would lose a whole rank.
inline double Snapped(double statistic) {
  const double near = std::round(2 * statistic) / 2;
  return std::abs(statistic - near) <= 1e-7 ? near : statistic;
}

/// The p-value of a statistic with a symmetric distribution, at this distance from its mean.
/// `lower` and `upper` return the probabilities of a statistic at most as small or at least as
/// large; only the needed one is computed.
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
