#include "distributions/moments.h"

#include <cmath>
#include <numbers>

namespace DistLib {

Moments FromRawMoments(const std::function<Real(int r)>& raw, Real limit,
                       std::optional<Real> mode) {
  Moments moments;
  moments.mode = mode;
  if (!(limit > 1)) return moments;
  const Real mean = raw(1);
  moments.mean = mean;
  if (!(limit > 2)) return moments;
  const Real second = raw(2), variance = second - mean * mean;
  // Each further order divides the rounding of the raw moments by the root of this.
  const Real left = variance / second;
  if (left < 1e-13L) return moments;
  moments.variance = variance;
  if (!(limit > 3) || left < 1e-9L) return moments;
  const Real third = raw(3);
  moments.skewness = (third - mean * (3 * second - 2 * mean * mean)) / std::pow(variance, 1.5L);
  if (!(limit > 4) || left < 1e-7L) return moments;
  const Real central = raw(4) - mean * (4 * third - mean * (6 * second - 3 * mean * mean));
  moments.kurtosis = central / (variance * variance);
  return moments;
}

Moments FromCumulants(const Real (&cumulants)[4], std::optional<Real> mode) {
  const Real variance = cumulants[1];
  return {.mean = cumulants[0],
          .variance = variance,
          .skewness = cumulants[2] / std::pow(variance, 1.5L),
          .kurtosis = 3 + cumulants[3] / (variance * variance),
          .mode = mode,
          .discrete_mean = {}};
}

Moments Moved(Moments moments, Real location, Real scale) {
  for (std::optional<Real>* const place : {&moments.mean, &moments.mode})
    if (*place) *place = location + scale * **place;
  if (moments.variance) *moments.variance *= scale * scale;
  return moments;
}

Real PeakBetween(Real low, Real high, const std::function<Real(Real)>& function) {
  constexpr Real kRatio = 1 / std::numbers::phi_v<Real>;
  Real left = high - kRatio * (high - low), right = low + kRatio * (high - low);
  Real at_left = function(left), at_right = function(right);
  for (int i = 0; i < 100; ++i) {
    if (at_left > at_right) {
      high = right, right = left, at_right = at_left;
      left = high - kRatio * (high - low), at_left = function(left);
    } else {
      low = left, left = right, at_left = at_right;
      right = low + kRatio * (high - low), at_right = function(right);
    }
  }
  return (low + high) / 2;
}

}  // namespace DistLib
