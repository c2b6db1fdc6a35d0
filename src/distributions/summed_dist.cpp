#include "distributions/summed_dist.h"

namespace DistLib {

/// Sums the smaller tail; the other one is the rest, unless that has lost its first digits.
Real SummedDist::TailOf(bool upper, Real k) const {
  const bool smaller = k >= SearchStart().centre;
  const Real sum = Sum(smaller, k);
  if (smaller == upper) return sum;
  return sum < 0.75L ? 1 - sum : Sum(upper, k);
}

Real SummedDist::Sum(bool upper, Real k) const {
  if (!upper) {
    const auto down = [&](Real i) {
      const auto [next, here] = RatioAt(k - i - 1);
      return here / next;
    };
    return ProbabilityOf(k).Value() * SumOfProducts(down, k - Lowest());
  }
  if (k == Highest()) return 0;
  const auto up = [&](Real i) {
    const auto [next, here] = RatioAt(k + i + 1);
    return next / here;
  };
  return ProbabilityOf(k + 1).Value() * SumOfProducts(up, Highest() - k - 1);
}

}  // namespace DistLib
