#pragma once

#include <functional>
#include <optional>
#include <span>

namespace zavrel {

/// Returns the cumulative probability of a value; nothing if it cannot be computed.
using CumulativeProbability = std::function<std::optional<double>(double)>;

/// The largest distance between the step function of values in ascending order and a distribution.
/// For the normal distribution with the mean and standard deviation of the values, this is the
/// Lilliefors statistic. H. W. Lilliefors, "On the Kolmogorov-Smirnov test for normality with mean
/// and variance unknown", Journal of the American Statistical Association 62 (1967). Each value is
/// a separate step; equal values are not merged.
///
/// Without values, or if a probability cannot be computed, the result is the not-computed code.
double LargestDistance(std::span<const double> sorted, const CumulativeProbability& cumulative);

}  // namespace zavrel
