#pragma once
// Sums over the components of a noncentral distribution, whose weights are Poisson probabilities.
//
// The components' tails follow from each other by adding terms: the lower tails with j falling, the
// upper ones with j rising. So each tail is a sum of positive terms in that order, from where the
// terms begin to count to where they cease to, and has all its digits however far out it is. (The
// other order subtracts: Benton and Krishnamoorthy, 2003, "Computing discrete mixtures of
// continuous distributions".)

#include <algorithm>
#include <cmath>
#include <limits>

#include "distributions/stirling.h"

namespace DistLib {

/// A component type has, for the shape of its component j = 0, 1, ...:
///   Lower(j), Upper(j): its tails;
///   LogStep(j): the logarithm of Lower(j) - Lower(j + 1), which is positive;
///   StepRatio(j): that difference at j + 1 divided by that at j;
///   LogDensity(j), DensityRatio(j): likewise of a function in proportion to the density;
///   MostRatio(j): at least Lower(j + 1) / Lower(j).
template <class Component>
class PoissonMixture {
 public:
  PoissonMixture(const Component& component, Real mean) : component_(component), mean_(mean) {}

  Real Lower() const {
    const auto fall = [this](Real j) {
      return mean_ / (j + 1) * std::min<Real>(component_.MostRatio(j), 1);
    };
    const Real highest = HighestTerm(fall), last = LastTerm(highest, fall);
    Real weight = Weight(last), tail = component_.Lower(last), sum = weight * tail;
    Real step = std::exp(component_.LogStep(last));
    for (Real j = last - 1; j >= 0; --j) {
      step /= component_.StepRatio(j);
      tail += step;
      weight *= (j + 1) / mean_;
      const Real term = weight * tail;
      sum += term;
      if (j < highest && term < kNegligible * sum) break;
    }
    return sum;
  }

  Real Upper() const {
    const auto fall = [this](Real j) {
      return mean_ / (j + 1) * std::max<Real>(component_.StepRatio(j), 1);
    };
    const Real highest = HighestTerm(fall);
    if (Weight(highest) == 0) return 0;
    const Real first = FirstTerm(highest, fall);
    Real weight = Weight(first), tail = component_.Upper(first), sum = weight * tail;
    Real step = std::exp(component_.LogStep(first));
    for (Real j = first; sum > 0; ++j) {
      tail += step;
      step *= component_.StepRatio(j);
      weight *= mean_ / (j + 1);
      const Real term = weight * tail;
      sum += term;
      if (j >= highest && term < kNegligible * sum) break;
    }
    return sum;
  }

  Real LogDensity() const {
    const auto ratio = [this](Real j) { return mean_ / (j + 1) * component_.DensityRatio(j); };
    const Real highest = HighestTerm(ratio);
    if (highest > kMost) return -std::numeric_limits<Real>::infinity();
    Real sum = 1;
    Real term = 1;
    for (Real j = highest; term > kNegligible * sum; ++j) sum += term *= ratio(j);
    term = 1;
    for (Real j = highest - 1; j >= 0 && term > kNegligible * sum; --j) sum += term /= ratio(j);
    return std::log(sum) + PoissonPower(highest, mean_).Log() + component_.LogDensity(highest);
  }

 private:
  static constexpr Real kNegligible = 1e-21L;
  static constexpr Real kMost = 1e8L;  // a component beyond it has no density that a double holds

  Real Weight(Real j) const { return PoissonPower(j, mean_).Value(); }

  /// The first j from which on the terms fall; `fall` gives the ratios, which fall themselves. Not
  /// exact beyond kMost.
  template <class Fall>
  static Real HighestTerm(Fall fall) {
    Real low = -1, high = 0;
    while (fall(high) >= 1) low = high, high = 2 * high + 1;
    if (high > kMost) return high;
    while (high - low > 1) {
      const Real middle = std::floor((low + high) / 2);
      (fall(middle) >= 1 ? low : high) = middle;
    }
    return high;
  }
  /// Beyond it, the terms are negligible.
  template <class Fall>
  static Real LastTerm(Real highest, Fall fall) {
    Real j = highest;
    for (Real bound = 1; bound > kNegligible; ++j) {
      const Real ratio = fall(j);
      bound *= ratio;
      if (ratio < 1 && bound / (1 - ratio) < kNegligible) break;
    }
    return j;
  }
  template <class Fall>
  static Real FirstTerm(Real highest, Fall fall) {
    Real j = highest;
    for (Real bound = 1; bound > kNegligible && j > 0; --j) bound /= fall(j - 1);
    return j;
  }

  Component component_;
  Real mean_;
};

}  // namespace DistLib
