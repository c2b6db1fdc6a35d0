#pragma once
// The incomplete beta function, accurate to the last digits of a double.

#include "companions/pdflib/distributions/pdf_dist.h"

namespace DistLib {

/// A point of a beta distribution: x and y = 1 - x, and the distance of x below the mean, lambda =
/// a y - b x, each as exactly as the caller knows it. For large a and b everything depends on
/// lambda, and computing it here would lose its digits by cancellation.
struct BetaPoint {
  Real a;
  Real b;
  Real x;
  Real y;
  Real lambda;
};

/// x^a y^b / B(a, b).
Real BetaPower(const BetaPoint& point);
Real LogBetaPower(const BetaPoint& point);
/// The probability of x or less.
Real BetaLower(const BetaPoint& point);
/// The probability of more than x.
Real BetaUpper(const BetaPoint& point);

}  // namespace DistLib
