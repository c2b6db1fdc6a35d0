#pragma once

#include "distributions/discrete_dist.h"

namespace DistLib {

/// Neighbouring probabilities stand to one another as two numbers: f(k + 1) : f(k) = next : here.
struct Ratio {
  Real next;
  Real here;
};

/// A distribution on finitely many whole numbers whose tails are sums of probabilities, from an
/// argument outwards.
class SummedDist : public DiscreteDist {
 public:
  using DiscreteDist::DiscreteDist;

  Real LowerTail(Real k) const final { return TailOf(false, k); }
  Real UpperTailBeyond(Real k) const final { return TailOf(true, k); }

 private:
  virtual Ratio RatioAt(Real k) const = 0;  // k and k + 1 are within the support

  Real TailOf(bool upper, Real k) const;
  Real Sum(bool upper, Real k) const;
};

/// 1 + ratio(0) + ratio(0) ratio(1) + ..., at most `count` ratios, up to where nothing is left;
/// once the terms fall, their ratios fall too, or come no closer to 1 than the sum can tell.
template <class RatioOf>
Real SumOfProducts(RatioOf ratio_of, Real count) {
  constexpr Real kNegligible = 0x1p-66L;
  Real sum = 1, term = 1;
  for (Real i = 0; i < count; ++i) {
    const Real ratio = ratio_of(i);
    term *= ratio;
    sum += term;
    if (term < (1 - ratio) * kNegligible * sum) break;
  }
  return sum;
}

}  // namespace DistLib
