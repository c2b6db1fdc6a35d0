#pragma once

#include "distributions/beta_tails.h"
#include "distributions/positive_dist.h"

namespace DistLib {

/// The odds w = x / (1 - x) of a beta variable x, times a scale.
class BetaPrime : public PositiveDist {
 public:
  BetaPrime(double a, double b, double scale)
      : a_(a), b_(b), scale_(scale), rest_(BetaRest(a_, b_)) {}
  BetaPrime(Real a, Real b) : a_(a), b_(b), scale_(1), rest_(BetaRest(a, b)) {}

  DistLib::Moments Moments() const override;
  std::optional<Real> Entropy() const override;

 private:
  Real DensityAt(Real x) const override;
  Real CumulativeAt(Real x) const override { return BetaLower(At(x)); }
  Real UpperTailAt(Real x) const override { return BetaUpper(At(x)); }
  Real ValueNear(Real z) const override;
  Real Growth(Real x) const override { return a_ - (a_ + b_) * x / (scale_ + x); }

  BetaPoint At(Real x) const;

  Real a_;
  Real b_;
  Real scale_;
  Real rest_;
};

}  // namespace DistLib
