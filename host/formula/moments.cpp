#include "host/formula/moments.h"

#include <cmath>

#include "host/formula/compensated_sum.h"
#include "host/formula/number_function.h"

namespace zavhost {

double MeanOf(std::span<const double> numbers) {
  const auto count = static_cast<double>(numbers.size());
  const double mean = SumOf(numbers, [](double x) { return x; }) / count;
  // Of equal numbers it is then that number, and their deviations are 0. Beside huge numbers that
  // cancel out, the deviations tell nothing.
  const double rest = SumOf(numbers, [mean](double x) { return x - mean; }) / count;
  return std::fabs(rest) <= 1e-15 * std::fabs(mean) ? mean + rest : mean;
}

double SquaredDeviations(std::span<const double> numbers) {
  return std::fmax(DeviationProducts(numbers, numbers), 0.0);
}

double DeviationProducts(std::span<const double> x, std::span<const double> y) {
  const double x_mean = MeanOf(x);
  const double y_mean = MeanOf(y);
  CompensatedSum products;
  CompensatedSum x_rest;  // the means are rounded, so the deviations do not quite add up to 0
  CompensatedSum y_rest;
  for (std::size_t i = 0; i < x.size(); ++i) {
    const double x_deviation = x[i] - x_mean;
    const double y_deviation = y[i] - y_mean;
    products.Add(x_deviation * y_deviation);
    x_rest.Add(x_deviation);
    y_rest.Add(y_deviation);
  }
  if (x.empty()) return 0.0;
  return products.value() - x_rest.value() * y_rest.value() / static_cast<double>(x.size());
}

double SampleVariance(std::span<const double> numbers) {
  const auto count = static_cast<double>(numbers.size());
  return count < 2.0 ? kNum : SquaredDeviations(numbers) / (count - 1.0);
}

}  // namespace zavhost
