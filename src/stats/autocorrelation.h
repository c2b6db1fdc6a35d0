#pragma once

#include <cstddef>
#include <span>

namespace zavrel {

/// The autocorrelation of a series at a lag: the sum of d(t) d(t + lag) over n - lag products,
/// divided by the sum of d(t)^2 over all n, where d are the deviations from the mean. Box and
/// Jenkins, "Time Series Analysis", chapter 2. Lag 0 gives 1, lag n gives 0.
///
/// Without values, or with fewer values than the lag, the result is the not-computed code. A mean
/// that is not a number is returned unchanged. Without spread, the result is the too-few code. The
/// sums use 80-bit extended precision, in which no finite series overflows.
double Autocorrelation(std::span<const double> values, std::size_t lag);

}  // namespace zavrel
