#pragma once
// Integrals over an interval of functions that are analytic inside it, whatever they do at its ends
// (Takahasi and Mori, 1974, "Double exponential formulas for numerical integration").

#include <cmath>
#include <numbers>

#include "distributions/pdf_dist.h"

namespace DistLib {

/// The integral over an interval of this width of `function`, which takes the distances from the
/// lower end and from the upper one, to the full accuracy of Real. The function should vary by no
/// more than a factor of about e^50, and have no peak that is much narrower unless it is at an end.
template <class Function>
Real TanhSinhIntegral(Real width, Function function) {
  constexpr Real kStep = 1 / 32.0L;
  constexpr int kSteps = 112;  // the weights vanish beyond them
  constexpr Real kHalfPi = std::numbers::pi_v<Real> / 2;
  Real sum = kHalfPi * function(width / 2, width / 2) / 4;
  for (int i = 1; i <= kSteps; ++i) {
    const Real t = i * kStep;
    const Real near = 1 / (1 + std::exp(2 * kHalfPi * std::sinh(t)));  // part of the width
    const Real weight = kHalfPi * std::cosh(t) * near * (1 - near);
    sum += weight * (function(width * near, width * (1 - near)) +
                     function(width * (1 - near), width * near));
  }
  return 2 * kStep * width * sum;
}

}  // namespace DistLib
