#pragma once
// Powers over gamma functions, in forms that keep their digits for large parameters (Loader, 2000):
// what would cancel is never computed.

#include <cmath>

#include "distributions/pdf_dist.h"

namespace DistLib {

/// factor e^exponent: a value that may be smaller than any Real.
struct Scaled {
  Real factor;
  Real exponent = 0;

  Real Value() const { return factor * std::exp(exponent); }
  Real Log() const { return std::log(factor) + exponent; }
  Scaled operator*(const Scaled& other) const {
    return {factor * other.factor, exponent + other.exponent};
  }
  Scaled operator/(const Scaled& other) const {
    return {factor / other.factor, exponent - other.exponent};
  }
  Scaled operator*(Real value) const { return {factor * value, exponent}; }
  Scaled operator/(Real value) const { return {factor / value, exponent}; }
};

/// The remainder of Stirling's formula for the logarithm of the gamma function: log gamma(z) = (z -
/// 1/2) log z - z + log(2 pi) / 2 + this. Abramowitz and Stegun 6.1.41.
Real StirlingRest(Real z);

/// log(ratio) - (ratio - 1), where `excess` is ratio - 1; never above 0.
Real LogBeyondLinear(Real ratio, Real excess);

/// mean^x e^-mean / gamma(x + 1).
Scaled PoissonPower(Real x, Real mean);

}  // namespace DistLib
