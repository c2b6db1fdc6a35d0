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

  /// E[x^power], which exists where shape + power > 0.
  Real RawMoment(Real power) const;
  Real LogMean() const;
  Real Entropy() const;
};

}  // namespace DistLib
