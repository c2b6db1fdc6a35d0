#include "distributions/stirling.h"

#include <array>
#include <boost/math/special_functions/log1p.hpp>
#include <numbers>

namespace DistLib {
namespace {

Real ComputedStirlingRest(Real z) {
  Real from_recurrence = 0;
  for (; z < 16; z += 1) from_recurrence += (z + 0.5L) * std::log1p(1 / z) - 1;
  const Real s = 1 / (z * z);
  const Real series =
      1 / 12.0L -
      s * (1 / 360.0L -
           s * (1 / 1260.0L -
                s * (1 / 1680.0L -
                     s * (1 / 1188.0L -
                          s * (691 / 360360.0L - s * (1 / 156.0L - s * 3617 / 122400.0L))))));
  return from_recurrence + series / z;
}

}  // namespace

// From a table for the small halves of whole numbers that counts and degrees of freedom give, for
// which the recurrence takes longest.
Real StirlingRest(Real z) {
  constexpr int kHalves = 33;
  static const std::array<Real, kHalves> table = [] {
    std::array<Real, kHalves> rests{};
    for (int i = 1; i < kHalves; ++i)
      rests[static_cast<std::size_t>(i)] = ComputedStirlingRest(i / 2.0L);
    return rests;
  }();
  const Real halves = 2 * z;
  if (halves < kHalves && halves == std::floor(halves) && halves > 0)
    return table[static_cast<std::size_t>(halves)];
  return ComputedStirlingRest(z);
}

Real LogBeyondLinear(Real ratio, Real excess) {
  return std::fabs(excess) < 0.5L ? boost::math::log1pmx(excess) : std::log(ratio) - excess;
}

Scaled PoissonPower(Real x, Real mean) {
  if (x == 0) return {1, -mean};
  return {1 / std::sqrt(2 * std::numbers::pi_v<Real> * x),
          x * LogBeyondLinear(mean / x, (mean - x) / x) - StirlingRest(x)};
}

}  // namespace DistLib
