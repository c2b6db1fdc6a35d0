#include "stats/durbin_watson.h"

#include <cstddef>

#include "numbers/error_double.h"
#include "numbers/floating_point_scope.h"

namespace zavrel {
namespace {

template <class Real>
struct Sums {
  Real differences = 0;
  Real squares = 0;
};

template <class Real>
Sums<Real> SumsOf(std::span<const double> residuals) {
  Sums<Real> sums;
  Real before = residuals[0];
  sums.squares = before * before;
  for (const double residual : residuals.subspan(1)) {
    const Real e = residual;
    sums.differences += (e - before) * (e - before);
    sums.squares += e * e;
    before = e;
  }
  return Settled(sums);
}

template <class Real>
double QuotientOf(const Sums<Real>& sums) {
  if (sums.squares == 0) return ConditionDouble(kConditionTooFew);
  return Settled(static_cast<double>(sums.differences / sums.squares));
}

}  // namespace

double DurbinWatson(std::span<const double> residuals) {
  if (residuals.size() < 2) return ConditionDouble(kConditionNotComputed);
  const FloatingPointScope environment;
  const Sums<double> sums = SumsOf<double>(residuals);
  if (environment.Overflowed()) return ConditionDouble(kConditionNotFinite);
  if (environment.LeftNormalRange()) return QuotientOf(SumsOf<long double>(residuals));
  return QuotientOf(sums);
}

}  // namespace zavrel
