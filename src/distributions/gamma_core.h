#pragma once

#include "distributions/transformed.h"

namespace DistLib {

/// The gamma distribution with scale 1.
struct GammaCore {
  static constexpr Real kLow = 0, kHigh = kRealInfinity;
  Real shape;

  Real LogDensity(Real x) const;
  Real Lower(Real x) const;
  Real Upper(Real x) const;
  Real Quantile(Real p) const;
  Real UpperQuantile(Real q) const;

  // The same near 0 by the logarithm of x, for shapes that leave much of the probability below any
  // number: from the first term of the series, all of it below 1e-300.
  Real LogDensityNear0(Real log_x) const;
  Real LowerNear0(Real log_x) const;
  Real LogQuantileNear0(Real log_p) const;

  /// E[x^power], which exists where shape + power > 0.
  Real RawMoment(Real power) const;
  Real LogMean() const;
  Real Entropy() const;
};

}  // namespace DistLib
