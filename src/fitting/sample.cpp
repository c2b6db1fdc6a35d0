#include "fitting/sample.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "fitting/fit.h"

namespace DistLib {
namespace {

/// Deviations are summed from the mean, since squares of the values themselves would cancel.
template <class Function>
SampleFacts::Shape ShapeOf(const Sample& sample, Function of) {
  const auto values = sample.values(), times = sample.times();
  const auto average = [&](auto term) {
    long double sum = 0;
    for (std::size_t i = 0; i < values.size(); ++i) sum += times[i] * term(of(values[i]));
    return static_cast<double>(sum / sample.count());
  };
  SampleFacts::Shape shape;
  shape.mean = average([](long double x) { return x; });
  const auto central = [&](int power) {
    return average([&](long double x) { return std::pow(x - shape.mean, power); });
  };
  shape.deviation = std::sqrt(central(2));
  if (shape.deviation > 0) shape.skewness = central(3) / std::pow(shape.deviation, 3);
  return shape;
}

}  // namespace

Sample::Sample(std::span<const double> values) {
  if (values.empty()) throw FitError("the sample is empty");
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (!std::isfinite(values[i]))
      throw FitError("value " + std::to_string(i + 1) + " of the sample is not a finite number");
  }
  std::vector<double> sorted(values.begin(), values.end());
  std::ranges::sort(sorted);
  for (const double value : sorted) Append(value, 1);
}

void Sample::Append(double value, double times) {
  if (values_.empty() || values_.back() != value) {
    values_.push_back(value);
    times_.push_back(0);
  }
  times_.back() += times;
  count_ += static_cast<std::size_t>(times);
}

bool Sample::OnlyWhole() const {
  return std::ranges::all_of(values_, [](double value) { return value == std::floor(value); });
}

Sample Sample::Thinned(std::size_t most) const {
  if (distinct() <= most) return *this;
  Sample thinned;
  std::size_t i = 0;
  double before = times_[0];  // values up to the i-th
  for (std::size_t k = 0; k < most; ++k) {
    const double rank = std::round(static_cast<double>(k) * static_cast<double>(count_ - 1) /
                                   static_cast<double>(most - 1));
    while (before <= rank) before += times_[++i];
    thinned.Append(values_[i], 1);
  }
  return thinned;
}

SampleFacts::SampleFacts(const Sample& sample)
    : sample_(sample), plain_(ShapeOf(sample, [](long double x) { return x; })) {}

double SampleFacts::Quantile(double share) const {
  double before = 0;
  for (std::size_t i = 0; i < sample_.distinct(); ++i) {
    before += sample_.times()[i];
    if (before >= share * static_cast<double>(sample_.count())) return sample_.values()[i];
  }
  return largest();
}

double SampleFacts::RootMeanSquare() const { return std::hypot(mean(), deviation()); }

SampleFacts::Shape SampleFacts::LogsFrom(double low) const {
  if (!(low < smallest())) return {};
  return ShapeOf(sample_, [low](long double x) { return std::log(x - low); });
}

double SampleFacts::MeanAbsoluteDeviation(bool of_logs) const {
  const auto scaled = [of_logs](long double x) { return of_logs ? std::log(x) : x; };
  const long double centre = scaled(median());
  return ShapeOf(sample_, [&](long double x) { return std::fabs(scaled(x) - centre); }).mean;
}

}  // namespace DistLib
