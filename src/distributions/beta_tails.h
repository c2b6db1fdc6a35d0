#pragma once
// The incomplete beta function, accurate to the last digits of a double.

#include "distributions/stirling.h"

namespace DistLib {

/// The part of x^a y^b / B(a, b) that does not depend on x, and takes longest.
Real BetaRest(Real a, Real b);

/// A point of a beta distribution: x and y = 1 - x, and the distance of x below the mean, lambda =
/// a y - b x, each as exactly as the caller knows it. For large a and b everything depends on
/// lambda, and computing it here would lose its digits by cancellation.
struct BetaPoint {
  Real a;
  Real b;
  Real x;
  Real y;
  Real lambda;
  /// A caller with many points of the same distribution computes it once.
  Real rest = BetaRest(a, b);
};

/// x^a y^b / B(a, b).
Scaled BetaPower(const BetaPoint& point);
/// x^a y^b gamma(a + b) / (gamma(a) b!), b from 0.
Scaled NegativeBinomialTerm(const BetaPoint& point);
/// The probability of x or less.
Real BetaLower(const BetaPoint& point);
/// The probability of more than x.
Real BetaUpper(const BetaPoint& point);

}  // namespace DistLib
