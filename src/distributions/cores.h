#pragma once
// The standard distributions that others transform. Each has its density's logarithm, both tails
// and both quantiles, and the ends of its support.

#include <cmath>
#include <limits>
#include <numbers>

#include "distributions/pdf_dist.h"

namespace DistLib {

inline constexpr Real kRealInfinity = std::numeric_limits<Real>::infinity();
inline constexpr Real kPi = std::numbers::pi_v<Real>;
inline constexpr Real kEuler = std::numbers::egamma_v<Real>;

/// A core's variable below it may be computed with in logarithms alone.
inline constexpr Real kNear0 = 1e-300L;

/// a log(x), 0 where a is 0.
inline Real TimesLog(Real a, Real x) { return a == 0 ? 0 : a * std::log(x); }

struct UnitExponential {
  static constexpr Real kLow = 0, kHigh = kRealInfinity;
  static Real LogDensity(Real x) { return -x; }
  static Real Lower(Real x) { return -std::expm1(-x); }
  static Real Upper(Real x) { return std::exp(-x); }
  static Real Quantile(Real p) { return -std::log1p(-p); }
  static Real UpperQuantile(Real q) { return -std::log(q); }
};

/// A core that is symmetric about 0 follows from its density and its upper tail.
template <class Half>
struct Symmetric {
  static constexpr Real kLow = -kRealInfinity, kHigh = kRealInfinity;
  static Real Density(Real x) requires requires { Half::Density(x); }
  { return Half::Density(std::fabs(x)); }
  static Real LogDensity(Real x) { return Half::LogDensity(std::fabs(x)); }
  static Real Upper(Real x) { return x < 0 ? 1 - Half::Tail(-x) : Half::Tail(x); }
  static Real Lower(Real x) { return Upper(-x); }
  static Real UpperQuantile(Real q) {
    return q <= 0.5L ? Half::TailQuantile(q) : -Half::TailQuantile(1 - q);
  }
  static Real Quantile(Real p) { return 0 - UpperQuantile(p); }
};

struct LogisticHalf {
  static Real Density(Real x) {
    const Real power = std::exp(-x);
    return power / ((1 + power) * (1 + power));
  }
  static Real LogDensity(Real x) { return -x - 2 * std::log1p(std::exp(-x)); }
  static Real Tail(Real x) { return 1 / (1 + std::exp(x)); }
  static Real TailQuantile(Real q) {
    return q < 0.25L ? std::log((1 - q) / q) : std::log1p((1 - 2 * q) / q);
  }
};
using StandardLogistic = Symmetric<LogisticHalf>;

struct LaplaceHalf {
  static Real LogDensity(Real x) { return -x - std::numbers::ln2_v<Real>; }
  static Real Tail(Real x) { return std::exp(-x) / 2; }
  static Real TailQuantile(Real q) { return q < 0.25L ? -std::log(2 * q) : -std::log1p(2 * q - 1); }
};
using StandardLaplace = Symmetric<LaplaceHalf>;

struct CauchyHalf {
  static Real LogDensity(Real x) { return -std::log(kPi) - 2 * std::log(std::hypot(1.0L, x)); }
  static Real Tail(Real x) { return x > 1 ? std::atan(1 / x) / kPi : 0.5L - std::atan(x) / kPi; }
  static Real TailQuantile(Real q) {
    return q < 0.25L ? 1 / std::tan(kPi * q) : std::tan(kPi * (0.5L - q));
  }
};
using StandardCauchy = Symmetric<CauchyHalf>;

struct HalfCauchyCore {
  static constexpr Real kLow = 0, kHigh = kRealInfinity;
  static Real LogDensity(Real x) { return std::log(2 / kPi) - 2 * std::log(std::hypot(1.0L, x)); }
  static Real Lower(Real x) { return std::atan(x) * (2 / kPi); }
  static Real Upper(Real x) { return std::atan(1 / x) * (2 / kPi); }
  static Real Quantile(Real p) {
    return p < 0.5L ? std::tan(kPi / 2 * p) : 1 / std::tan(kPi / 2 * (1 - p));
  }
  static Real UpperQuantile(Real q) { return 1 / Quantile(q); }
};

/// The absolute value of a standard normal variable; defined with the normal functions.
struct HalfNormalCore {
  static constexpr Real kLow = 0, kHigh = kRealInfinity;
  static Real LogDensity(Real x) { return (std::log(2 / kPi) - x * x) / 2; }
  static Real Lower(Real x);
  static Real Upper(Real x);
  static Real Quantile(Real p);
  static Real UpperQuantile(Real q);
};

struct NormalHalf {
  static Real LogDensity(Real x) { return -(std::log(2 * kPi) + x * x) / 2; }
  static Real Tail(Real x) { return HalfNormalCore::Upper(x) / 2; }
  static Real TailQuantile(Real q) { return HalfNormalCore::UpperQuantile(2 * q); }
};
using StandardNormal = Symmetric<NormalHalf>;

}  // namespace DistLib
