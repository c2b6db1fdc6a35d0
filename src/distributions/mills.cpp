#include "distributions/mills.h"

#include <boost/math/special_functions/erf.hpp>
#include <cmath>
#include <numbers>

#include "distributions/tanh_sinh.h"

namespace DistLib {
namespace {

constexpr Real kFar = 10;  // from here on, the continued fraction serves

/// What Laplace's continued fraction adds to z in the denominator of the ratio; z >= kFar.
Real FractionBelow(Real z) {
  constexpr int kTerms = 40;
  Real value = z;
  for (int k = kTerms; k > 1; --k) value = z + k / value;
  return 1 / value;
}

/// The ratio falls with this slope: 1 - z times the ratio.
Real FallAt(Real z) {
  if (z < kFar) return 1 - z * MillsRatio(z);
  const Real below = FractionBelow(z);
  return below / (z + below);
}

/// NormalStretch by its Taylor series, whose coefficients follow from f' = -(z + t) f.
Real ShortStretch(Real z, Real width) {
  constexpr int kTerms = 24;
  Real sum = 0, power = width, before = 0, coefficient = 1;
  for (int n = 1; n <= kTerms; ++n) {
    sum += coefficient * power / n;
    power *= width;
    const Real next = -(z * coefficient + before) / n;
    before = coefficient;
    coefficient = next;
  }
  return sum;
}

}  // namespace

Real MillsRatio(Real z) {
  using std::numbers::pi_v;
  if (z >= kFar) return 1 / (z + FractionBelow(z));
  return std::sqrt(pi_v<Real> / 2) * std::exp(z * z / 2) *
         boost::math::erfc(z / std::numbers::sqrt2_v<Real>);
}

Real MillsDifference(Real z, Real gap) {
  const Real whole = MillsRatio(z), difference = whole - MillsRatio(z + gap);
  if (difference > whole / 64) return difference;
  return TanhSinhIntegral(gap,
                          [z](Real from_low, Real /*unused*/) { return FallAt(z + from_low); });
}

Real NormalStretch(Real z, Real width) {
  if (width * (1 + z) < 0.5L) return ShortStretch(z, width);
  const Real exponent = width * (z + width / 2);
  return MillsRatio(z) - std::exp(-exponent) * MillsRatio(z + width);
}

}  // namespace DistLib
