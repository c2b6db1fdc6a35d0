#pragma once

#include <functional>
#include <optional>
#include <span>

namespace zavrel {

/// Of a value its cumulative probability; nothing when it cannot be computed.
using CumulativeProbability = std::function<std::optional<double>(double)>;

/// The largest distance between the step function of values in ascending order and a distribution:
/// the Lilliefors statistic when that is the normal distribution with the values' own mean and
/// standard deviation. H. W. Lilliefors, "On the Kolmogorov-Smirnov test for normality with mean
/// and variance unknown", Journal of the American Statistical Association 62 (1967). Each value is
/// a step of its own; equal ones are not merged.
///
/// No values, or a probability that cannot be computed: the not-computed code.
double LargestDistance(std::span<const double> sorted, const CumulativeProbability& cumulative);

}  // namespace zavrel
