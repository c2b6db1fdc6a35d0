#include "distributions/beta_tails.h"

#include <array>
#include <boost/math/special_functions/beta.hpp>
#include <boost/math/special_functions/log1p.hpp>
#include <boost/math/tools/fraction.hpp>
#include <cmath>
#include <cstdint>
#include <limits>
#include <numbers>
#include <stdexcept>
#include <utility>

namespace DistLib {
namespace {

/// The remainder of Stirling's formula for the logarithm of the gamma function: log gamma(z) = (z -
/// 1/2) log z - z + log(2 pi) / 2 + this. Abramowitz and Stegun 6.1.41.
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

/// The same, from a table for the small halves of whole numbers that counts and degrees of freedom
/// give, for which the recurrence takes longest.
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

/// log(ratio) - (ratio - 1), where `excess` is ratio - 1; never above 0.
Real LogBeyondLinear(Real ratio, Real excess) {
  return std::fabs(excess) < 0.5L ? boost::math::log1pmx(excess) : std::log(ratio) - excess;
}

/// The continued fraction that divides x^a y^b / B(a, b) (DiDonato and Morris, 1992, formula 9); it
/// converges fast up to the mean.
struct BetaFraction {
  using result_type = std::pair<Real, Real>;

  result_type operator()() {
    const Real middle = m == 0 ? 1 : a + 2 * m - 1;  // could be 0 for m = 0, where its factor is 0
    const Real numerator = (a + m - 1) / middle * ((a + b + m - 1) / middle) * m * (b - m) * x * x;
    const Real denominator =
        m + m * (b - m) * x / middle + (a + m) * (lambda + 1 + m * (2 - x)) / (a + 2 * m + 1);
    m += 1;
    return {numerator, denominator};
  }

  Real a, b, x, lambda;
  Real m = 0;
};

Real FractionAt(const BetaPoint& point) {
  BetaFraction fraction{point.a, point.b, point.x, point.lambda};
  std::uintmax_t terms = 2'000'000;  // their number grows with the square root of the parameters
  const std::uintmax_t limit = terms;
  const Real value = boost::math::tools::continued_fraction_b(
      fraction, std::numeric_limits<Real>::epsilon(), terms);
  if (terms >= limit) throw std::runtime_error("no convergence");
  return value;
}

BetaPoint Mirrored(const BetaPoint& point) {
  return {point.b, point.a, point.y, point.x, -point.lambda, point.rest};
}

/// Whether to use the fraction. (Boost's own incomplete beta function lost 18 epsilons at 49 and 28
/// degrees of freedom of F, and 64 at a million trials of the binomial distribution.)
bool Serves(const BetaPoint& point) { return point.a >= 0.5L && point.b >= 0.5L; }

}  // namespace

Real BetaRest(Real a, Real b) { return StirlingRest(a + b) - StirlingRest(a) - StirlingRest(b); }

// With x0 = a / (a + b) and y0 = b / (a + b), x / x0 is 1 - lambda / a and y / y0 is 1 + lambda /
// b. The product of their powers is the exponential of a log(x / x0) + b log(y / y0), whose linear
// parts cancel and are omitted (Loader, 2000).
Real BetaPower(const BetaPoint& point) {
  const auto& [a, b, x, y, lambda, rest] = point;
  const Real n = a + b;
  const Real exponent =
      a * LogBeyondLinear(x / a * n, -lambda / a) + b * LogBeyondLinear(y / b * n, lambda / b);
  return std::sqrt(a / n * b / (2 * std::numbers::pi_v<Real>)) * std::exp(rest + exponent);
}

Real BetaLower(const BetaPoint& point) {
  const Real a = point.a, b = point.b, x = point.x, y = point.y;
  if (x == 0) return 0;
  if (y == 0) return 1;
  if (!Serves(point)) return x <= y ? boost::math::ibeta(a, b, x) : boost::math::ibetac(b, a, y);
  if (point.lambda < 0) return 1 - BetaLower(Mirrored(point));
  return BetaPower(point) / FractionAt(point);
}

Real BetaUpper(const BetaPoint& point) { return BetaLower(Mirrored(point)); }

}  // namespace DistLib
