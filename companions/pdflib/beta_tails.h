#pragma once
// The incomplete beta function, right to the last digits of a double.

#include "companions/pdflib/pdf_dist.h"

namespace DistLib {

/// Where a beta distribution is looked at: x and y = 1 - x, and how far x lies below the mean,
/// lambda = a y - b x, each as exact as the caller knows it. For large a and b everything hangs on
/// lambda, and nothing but cancellation would be left of it here.
struct BetaPoint {
  Real a;
  Real b;
  Real x;
  Real y;
  Real lambda;
};

/// x^a y^b / B(a, b).
Real BetaPower(const BetaPoint& point);
/// The probability of x or less.
Real BetaLower(const BetaPoint& point);
/// The probability of more than x.
Real BetaUpper(const BetaPoint& point);

}  // namespace DistLib
