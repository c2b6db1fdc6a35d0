#pragma once
// Monotone maps that take a core's variable x to that of another distribution, z. Each has its
// inverse, Back, and the logarithm of the inverse's slope, log |dx/dz|, where x = Back(z).
// Logarithms of constants stand in members with an initializer, to be computed once.

#include <cmath>

#include "distributions/cores.h"

namespace DistLib {

struct Identity {
  static bool Rises() { return true; }
  static Real Forward(Real x) { return x; }
  static Real Back(Real z) { return z; }
  static Real LogSlope(Real /*z*/, Real /*x*/) { return 0; }
};

/// z = x^power
struct PowerMap {
  Real power;
  Real log_power = std::log(std::fabs(power));

  bool Rises() const { return power > 0; }
  Real Forward(Real x) const { return std::pow(x, power); }
  Real Back(Real z) const { return std::pow(z, 1 / power); }
  Real LogSlope(Real z, Real /*x*/) const { return TimesLog(1 / power - 1, z) - log_power; }
  // By the logarithm of x.
  Real ForwardOfLog(Real log_x) const { return std::exp(power * log_x); }
  Real LogBack(Real z) const { return std::log(z) / power; }
};

/// z = factor log(x)
struct LogMap {
  Real factor;
  Real log_factor = std::log(std::fabs(factor));

  bool Rises() const { return factor > 0; }
  Real Forward(Real x) const { return factor * std::log(x); }
  Real Back(Real z) const { return std::exp(z / factor); }
  Real LogSlope(Real z, Real /*x*/) const { return z / factor - log_factor; }
  Real ForwardOfLog(Real log_x) const { return factor * log_x; }
  Real LogBack(Real z) const { return z / factor; }
};

/// z = exp(shift + factor x)
struct ExpMap {
  Real factor;
  Real shift = 0;
  Real log_factor = std::log(std::fabs(factor));

  bool Rises() const { return factor > 0; }
  Real Forward(Real x) const { return std::exp(shift + factor * x); }
  Real Back(Real z) const { return (std::log(z) - shift) / factor; }
  Real LogSlope(Real /*z*/, Real x) const { return -log_factor - (shift + factor * x); }
};

/// z = (exp(factor x) - 1) / divisor, x where the factor is 0; both have the same sign.
struct Expm1Map {
  Real factor;
  Real divisor;
  Real log_ratio = factor == 0 ? 0 : std::log(divisor / factor);

  static bool Rises() { return true; }
  Real Forward(Real x) const { return factor == 0 ? x : std::expm1(factor * x) / divisor; }
  Real Back(Real z) const { return factor == 0 ? z : LogBase(z) / factor; }
  Real LogSlope(Real z, Real /*x*/) const { return factor == 0 ? 0 : log_ratio - LogBase(z); }

 private:
  /// The end of the support as a double may be beyond the exact one.
  Real LogBase(Real z) const { return std::log1p(std::fmax(divisor * z, -1)); }
};

/// First `first`, then `second`.
template <class First, class Second>
struct Composed {
  First first;
  Second second;

  bool Rises() const { return first.Rises() == second.Rises(); }
  Real Forward(Real x) const { return second.Forward(first.Forward(x)); }
  Real Back(Real z) const { return first.Back(second.Back(z)); }
  Real LogSlope(Real z, Real x) const {
    const Real between = second.Back(z);
    return second.LogSlope(z, between) + first.LogSlope(between, x);
  }
};

}  // namespace DistLib
