#include "matrix/pair_value.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "numbers/error_double.h"
#include "numbers/floating_point_scope.h"
#include "stats/moment_block.h"

namespace zavrel {
namespace {

template <class Real>
double Value(Real sum, std::size_t n, const VariableSummary& x, const VariableSummary& y,
             PairOptions options) {
  Real value = sum / static_cast<Real>(options.form == Form::kSample ? n - 1 : n);
  if (options.measure == Measure::kCorrelation) {
    const Real spread =
        static_cast<Real>(x.standard_deviation) * static_cast<Real>(y.standard_deviation);
    if (spread == 0) return ConditionDouble(kConditionTooFew);
    value /= spread;
  }
  const auto result = static_cast<double>(value);
  if (!std::isfinite(result)) return ConditionDouble(kConditionNotFinite);
  // Rounding may take a correlation past 1.
  if (options.measure == Measure::kCorrelation) return std::clamp(result, -1.0, 1.0);
  return x.is_constant || y.is_constant ? 0 : result;
}

template <class Real>
Real SumOfProducts(std::span<const double> x, std::span<const double> y, Real mean_x, Real mean_y) {
  Real sum = 0;
  for (std::size_t t = 0; t < x.size(); ++t)
    sum += (static_cast<Real>(x[t]) - mean_x) * (static_cast<Real>(y[t]) - mean_y);
  return sum;
}

template <class Real>
double ValueOfSeries(std::span<const double> x, const VariableSummary& of_x,
                     std::span<const double> y, const VariableSummary& of_y, PairOptions options) {
  const Real sum = SumOfProducts(x, y, static_cast<Real>(of_x.mean), static_cast<Real>(of_y.mean));
  return Value(sum, x.size(), of_x, of_y, options);
}

bool HasValue(std::size_t n, const VariableSummary& x, const VariableSummary& y,
              PairOptions options) {
  if (n <= (options.form == Form::kSample ? 1u : 0u)) return false;
  return !std::isnan(x.standard_deviation) && !std::isnan(y.standard_deviation);
}

/// Nothing if an operation overflows or underflows, or a value is not finite.
std::optional<VariableSummary> SummariseInOrder(std::span<const double> values,
                                                PairOptions options) {
  const FloatingPointScope environment;
  double sum = 0;
  for (const double x : values) sum += x;
  const double mean = sum / static_cast<double>(values.size());
  double s1 = 0;
  double s2 = 0;
  const bool is_constant = IsConstant(values);
  for (std::size_t t = 0; t < values.size() && !is_constant; ++t) {
    const double d = values[t] - mean;
    s1 += d;
    s2 += d * d;
  }
  const VariableSummary summary =
      Settled(SummaryFromSums(mean, s1, s2, values.size(), is_constant, options));
  if (environment.LeftNormalRange() || !std::isfinite(summary.mean)) return std::nullopt;
  return summary;
}

}  // namespace

VariableSummary Summarise(std::span<const double> values, PairOptions options) {
  const std::optional<VariableSummary> in_order = SummariseInOrder(values, options);
  if (in_order) return *in_order;
  const MomentBlock moments = ComputeMoments(values, options.form);
  return {moments.mean, moments.standard_deviation, IsConstant(values)};
}

bool IsConstant(std::span<const double> values) {
  return std::all_of(values.begin(), values.end(), [&](double x) { return x == values[0]; });
}

// Like the sample and population forms of ComputeMoments.
VariableSummary SummaryFromSums(double mean, double s1, double s2, std::size_t n, bool is_constant,
                                PairOptions options) {
  if (n == 0) return {ConditionDouble(kConditionNoData), ConditionDouble(kConditionNoData)};
  if (is_constant) s1 = s2 = 0;
  const auto count = static_cast<double>(n);
  if (options.form == Form::kPopulation) return {mean, std::sqrt(s2 / count), is_constant};
  if (n < 2) return {mean, ConditionDouble(kConditionTooFew), is_constant};
  const double variance = (s2 - s1 * s1 / count) / (count - 1);
  return {mean, std::sqrt(variance < 0 ? 0 : variance), is_constant};
}

double PairValueFromSum(double sum, std::size_t n, const VariableSummary& x,
                        const VariableSummary& y, PairOptions options) {
  return HasValue(n, x, y, options) ? Value(sum, n, x, y, options)
                                    : ConditionDouble(kConditionNoData);
}

double PairValue(std::span<const double> x, const VariableSummary& of_x, std::span<const double> y,
                 const VariableSummary& of_y, PairOptions options) {
  if (!HasValue(x.size(), of_x, of_y, options)) return ConditionDouble(kConditionNoData);
  const FloatingPointScope environment;
  const double value = Settled(ValueOfSeries<double>(x, of_x, y, of_y, options));
  if (!environment.LeftNormalRange()) return value;
  return Settled(ValueOfSeries<long double>(x, of_x, y, of_y, options));
}

}  // namespace zavrel
