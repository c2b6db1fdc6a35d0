#pragma once
// Sums of slowly falling terms by the formula of Euler and Maclaurin: the integral, and corrections
// at its ends from the function's derivatives there. Abramowitz and Stegun 23.1.30.

#include <array>

#include "distributions/pdf_dist.h"

namespace DistLib {

/// What a sum cannot show.
inline constexpr Real kNegligible = 0x1p-72L;

/// The coefficients of x - m, (x - m)^2, ... in a function near m.
using Taylor = std::array<Real, 23>;

/// Adds those of factor x^-power.
void AddPower(Taylor& series, Real factor, Real power, Real m);
/// Adds those of factor log(x).
void AddLog(Taylor& series, Real factor, Real m);

/// What the derivatives of f at m contribute to f(m) + f(m + 1) + ... beside the integral from m
/// and f(m) / 2.
Real DerivativePart(const Taylor& series);
/// By what this sum exceeds the integral, divided by f(m); the series is of the logarithm of f.
Real EndCorrection(const Taylor& log_series);

/// f(m) + f(m + 1) + ... of a falling function. It has Value(x); Integral(x), up to infinity;
/// Series(x), of its logarithm; and EnoughFrom(), the number from where on the series serve.
template <class Function>
Real EndlessSum(const Function& f, Real m) {
  Real sum = 0;
  for (; m < f.EnoughFrom(); ++m) {
    const Real term = f.Value(m);
    sum += term;
    if (term <= kNegligible * sum) return sum;
  }
  return sum + f.Integral(m) + f.Value(m) * EndCorrection(f.Series(m));
}

}  // namespace DistLib
