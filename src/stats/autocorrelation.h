#pragma once

#include <cstddef>
#include <span>

namespace zavrel {

/// The autocorrelation of a series at a lag: sum of d(t) d(t + lag) over n - lag products, divided
/// by the sum of d(t)^2 over all n, d the deviations from the mean. Box and Jenkins, "Time Series
/// Analysis", chapter 2. Lag 0 gives 1, a lag of n gives 0.
///
/// No values or fewer than the lag: the not-computed code. A mean that is not a number comes back
/// as it is. No spread: the too-few code. The sums run in 80-bit extended precision, in which no
/// finite series overflows.
double Autocorrelation(std::span<const double> values, std::size_t lag);

}  // namespace zavrel
