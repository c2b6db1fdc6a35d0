#include "distributions/positive_dist.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <stdexcept>

namespace DistLib {
namespace {

/// The normal score that is exceeded with probability q <= 0.5, with an error below 5e-4
/// (Abramowitz and Stegun 26.2.23).
Real RoughScore(Real q) {
  const Real t = std::sqrt(-2 * std::log(q));
  return t - (2.515517L + t * (0.802853L + t * 0.010328L)) /
                 (1 + t * (1.432788L + t * (0.189269L + t * 0.001308L)));
}

}  // namespace

PositiveDist::PositiveDist() : PdfDist(0, std::numeric_limits<double>::infinity()) {}

// Solves for the smaller of the two tails; 1 - p is then exact.
Real PositiveDist::QuantileOf(Real p) const {
  return p <= 0.5L ? Solve(p, false) : Solve(1 - p, true);
}

Real PositiveDist::UpperQuantileOf(Real q) const {
  return q <= 0.5L ? Solve(q, true) : Solve(1 - q, false);
}

Real PositiveDist::Solve(Real probability, bool upper) const {
  constexpr Real kFar = 2000;       // a log x beyond every double
  constexpr Real kNear = 0.5L;      // of steps in terms of the tail: Halley's method converges
  constexpr Real kSettled = 1e-6L;  // after so small a step of it, the next one is lost in rounding
  const Real sign = upper ? -1 : 1;
  const Real target = std::log(probability);
  const Real centre = std::log(ValueNear(0));
  Real u = std::log(ValueNear(-sign * RoughScore(probability)));
  for (int i = 0; i < 100; ++i) {
    const Real x = std::exp(u);
    const Real tail = upper ? UpperTailAt(x) : CumulativeAt(x);
    const Real slope = sign * x * DensityAt(x) / tail;
    if (!(tail > 0 && slope * sign > 0)) {  // so far out that the tail has vanished
      u = (u + centre) / 2;
      continue;
    }
    const Real change = target - std::log(tail);
    Real step = change / slope;
    const Real size = std::fmax(std::fabs(step), std::fabs(change));
    if (size < kNear) step /= 1 + step * (Growth(x) - slope) / 2;
    if (size < kSettled) return x + x * std::expm1(step);
    const Real next = std::clamp(u + step, -kFar, kFar);
    if (next == u) return u < 0 ? 0 : std::numeric_limits<Real>::infinity();
    u = next;
  }
  throw std::runtime_error("no convergence");
}

}  // namespace DistLib
