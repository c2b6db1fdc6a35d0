#pragma once
// Means and sums of squares, from the deviations of the numbers from their mean.

#include <span>

namespace zavhost {

/// The mean; of no numbers, not a number.
double MeanOf(std::span<const double> numbers);
/// The sum of squared deviations from the mean.
double SquaredDeviations(std::span<const double> numbers);
/// The sum of products of deviations from the means; both have the same size.
double DeviationProducts(std::span<const double> x, std::span<const double> y);
/// The variance of a sample; of fewer than two numbers, not a number.
double SampleVariance(std::span<const double> numbers);

}  // namespace zavhost
