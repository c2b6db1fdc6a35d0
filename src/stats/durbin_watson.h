#pragma once

#include <span>

namespace zavrel {

/// The Durbin-Watson statistic of residuals e(1) ... e(n) in time order: the sum of (e(t) -
/// e(t-1))^2 over t = 2 ... n, divided by the sum of e(t)^2. Between 0 and 4. J. Durbin and G. S.
/// Watson, "Testing for serial correlation in least squares regression I", Biometrika 37 (1950).
///
/// Fewer than two residuals give the not-computed code, a sum that overflows the not-finite code,
/// and residuals that are all 0 the too-few code. If squares underflow, the sums use 80-bit
/// extended precision.
double DurbinWatson(std::span<const double> residuals);

}  // namespace zavrel
