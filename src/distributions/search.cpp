#include "distributions/search.h"

#include <stdexcept>

namespace DistLib {
namespace {

/// The sums over the trapezoidal rule's terms of the powers 0 to 4 of the distance from `origin`.
struct PowerSums {
  Real origin;
  Real sums[5] = {};
  Real largest = 0;

  /// Whether the term counts.
  bool Add(const Weighted& term) {
    constexpr Real kNegligible = 1e-20L;
    if (!(term.density > 0) || !std::isfinite(term.value)) return false;
    const Real distance = term.value - origin;
    Real power = term.density;
    for (Real& sum : sums) {
      sum += power;
      power *= distance;
    }
    const Real last = std::fabs(power / distance);
    largest = std::max(largest, last);
    return last > kNegligible * largest || term.density > kNegligible * sums[0];
  }

  Moments Result(std::optional<Real> mode) const {
    const Real mean = sums[1] / sums[0], second = sums[2] / sums[0], third = sums[3] / sums[0];
    const Real variance = second - mean * mean;
    const Real skew = third - mean * (3 * second - 2 * mean * mean);
    const Real fourth =
        sums[4] / sums[0] - mean * (4 * third - mean * (6 * second - 3 * mean * mean));
    return {.mean = origin + mean,
            .variance = variance,
            .skewness = skew / std::pow(variance, 1.5L),
            .kurtosis = fourth / (variance * variance),
            .mode = mode,
            .discrete_mean = {}};
  }
};

}  // namespace

Real SearchedCoordinate(Real p, bool upper, Real low, Real high,
                        const std::function<Probe(Real u)>& probe) {
  constexpr int kMostSteps = 300;
  // After so small a step, and with so small a gap, the next step is lost in rounding.
  constexpr Real kSettled = 1e-11L, kSettledGap = 1e-9L;
  constexpr Real kNarrowest = 1e-17L;
  const Real sign = upper ? -1 : 1;
  const Real highest = high;
  Real u = std::clamp<Real>(0, low, high);
  Real longest = 2;  // doubled as often as it is reached: from afar, a step may go much too far
  for (int i = 0; i < kMostSteps; ++i) {
    const auto [tail, slope] = probe(u);
    const Real gap = std::log(p / tail);
    Real step = sign * gap * tail / slope;
    if (std::fabs(step) < kSettled && std::fabs(gap) < kSettledGap) return u + step;
    // Where x cannot be closer to an end of the support, its tails jump. Behind the largest double
    // there may be more of them.
    if (high - low < kNarrowest * (1 + std::fabs(u)))
      return high == highest && sign * gap > kSettledGap ? kRealInfinity : u;
    if (!(std::fabs(step) < longest)) {  // not even if tail or slope have vanished
      step = std::copysign(longest, sign * gap);
      longest *= 2;
    }
    (step > 0 ? low : high) = u;
    u += step;
    if (!(u > low && u < high)) u = (low + high) / 2;
  }
  throw std::runtime_error("no convergence");
}

Moments MomentsByQuadrature(Real middle, Real width, std::optional<Real> mode,
                            const std::function<Weighted(Real u)>& at) {
  constexpr int kMostHalvings = 7;
  constexpr int kMostTerms = 2000;
  constexpr Real kSettled = 1e-13L;
  constexpr Real kLost = 1e-11L;  // of the probability, where the values run into an end
  const Weighted origin = at(middle);
  Moments last;
  for (Real step = width / 2; step > std::ldexp(width, -kMostHalvings); step /= 2) {
    PowerSums sums{.origin = origin.value};
    sums.Add({origin.value, origin.density});
    for (const Real direction : {step, -step})
      for (int i = 1; i < kMostTerms && sums.Add(at(middle + i * direction)); ++i) continue;
    const Moments moments = sums.Result(mode);
    const bool settled = last.kurtosis &&
                         std::fabs(*moments.kurtosis / *last.kurtosis - 1) < kSettled &&
                         std::fabs(*moments.variance / *last.variance - 1) < kSettled;
    if (settled && std::fabs(sums.sums[0] * step - 1) < kLost) return moments;
    last = moments;
  }
  return {.mean = {},
          .variance = {},
          .skewness = {},
          .kurtosis = {},
          .mode = mode,
          .discrete_mean = {}};
}

}  // namespace DistLib
