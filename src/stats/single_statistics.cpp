#include "stats/single_statistics.h"

#include <algorithm>
#include <cmath>

#include "numbers/error_double.h"
#include "numbers/floating_point_scope.h"

namespace zavrel {
namespace {

using Values = std::span<const double>;

double Finite(double result) {
  return std::isfinite(result) ? result : ConditionDouble(kConditionNotFinite);
}

// Each formula, in a precision given by a template parameter.
template <class Real>
Real SumOf(Values values) {
  Real sum = 0;
  for (const double x : values) sum += static_cast<Real>(x);
  return sum;
}

template <class Real>
Real AveDevOf(Values values) {
  const auto n = static_cast<Real>(values.size());
  const Real mean = SumOf<Real>(values) / n;
  Real sum = 0;
  for (const double x : values) sum += std::abs(static_cast<Real>(x) - mean);
  return sum / n;
}

template <class Real>
Real SumDevSqOf(Values values) {
  const Real mean = SumOf<Real>(values) / static_cast<Real>(values.size());
  Real sum = 0;
  for (const double x : values) {
    const Real d = static_cast<Real>(x) - mean;
    sum += d * d;
  }
  return sum;
}

template <class Real>
Real MeanAbsOf(Values values) {
  Real sum = 0;
  for (const double x : values) sum += std::abs(static_cast<Real>(x));
  return sum / static_cast<Real>(values.size());
}

/// Computes the formula in double precision and, if that leaves the range of doubles, again in
/// extended precision.
template <double (*kPlain)(Values), long double (*kExtended)(Values)>
double WithExtendedRetry(Values values) {
  const FloatingPointScope environment;
  const double result = Settled(kPlain(values));
  if (!environment.LeftNormalRange()) return Finite(result);
  return Finite(Settled(static_cast<double>(kExtended(values))));
}

double ProductByLogarithms(Values values) {
  long double logarithms = 0;
  bool negative = false;
  for (const double x : values) {
    if (x == 0) return 0;
    if (x < 0) negative = !negative;
    logarithms += std::log(std::abs(static_cast<long double>(x)));
  }
  const auto magnitude = static_cast<double>(std::exp(logarithms));
  return negative ? -magnitude : magnitude;
}

double Product(Values values) {
  const FloatingPointScope environment;
  double product = 1;
  for (const double x : values) product *= x;
  product = Settled(product);
  if (!environment.LeftNormalRange()) return Finite(product);
  return Finite(Settled(ProductByLogarithms(values)));
}

double Range(Values values) {
  const FloatingPointScope environment;
  const auto [minimum, maximum] = std::minmax_element(values.begin(), values.end());
  return Finite(Settled(*maximum - *minimum));
}

double SumSq(Values values) {
  const FloatingPointScope environment;
  double sum = 0;
  for (const double x : values) sum += x * x;
  return Finite(Settled(sum));
}

}  // namespace

double SingleStatistic(StatisticId id, std::span<const double> values) {
  constexpr double kNotComputed = ConditionDouble(kConditionNotComputed);
  const bool empty = values.empty();
  switch (id) {
    case StatisticId::kSum:
      return WithExtendedRetry<SumOf<double>, SumOf<long double>>(values);
    case StatisticId::kProduct:
      return empty ? kNotComputed : Product(values);
    case StatisticId::kRange:
      return empty ? 0 : Range(values);
    case StatisticId::kAveDev:
      return empty ? kNotComputed
                   : WithExtendedRetry<AveDevOf<double>, AveDevOf<long double>>(values);
    case StatisticId::kSumSq:
      return SumSq(values);
    case StatisticId::kSumDevSq:
      return empty ? 0 : WithExtendedRetry<SumDevSqOf<double>, SumDevSqOf<long double>>(values);
    case StatisticId::kMeanAbs:
      return empty ? kNotComputed
                   : WithExtendedRetry<MeanAbsOf<double>, MeanAbsOf<long double>>(values);
    default:
      return static_cast<double>(values.size());
  }
}

}  // namespace zavrel
