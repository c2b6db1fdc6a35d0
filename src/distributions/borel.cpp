#include <boost/math/quadrature/exp_sinh.hpp>

#include "distributions/catalogue.h"
#include "distributions/cores.h"
#include "distributions/discrete_dist.h"
#include "distributions/endless_sum.h"
#include "distributions/moments.h"

namespace DistLib {
namespace {

/// x^x e^-x / x! e^(-rate x) / x but for the root of 2 pi: x^(-3/2) e^(-rate x - rest), where the
/// rest is that of Stirling's formula.
class BorelTerm {
 public:
  explicit BorelTerm(Real rate) : rate_(rate) {}

  Scaled ScaledValue(Real x) const {
    return {1 / (x * std::sqrt(x)), -rate_ * x - StirlingRest(x)};
  }
  Real Value(Real x) const { return ScaledValue(x).Value(); }
  /// Terms that fall fast need nothing else.
  Real EnoughFrom() const { return rate_ > 0.5L ? kRealInfinity : 64; }
  Taylor Series(Real x) const {
    Taylor series{-rate_};
    AddLog(series, -1.5L, x);
    AddPower(series, -1 / 12.0L, 1, x);
    AddPower(series, 1 / 360.0L, 3, x);
    AddPower(series, -1 / 1260.0L, 5, x);
    AddPower(series, 1 / 1680.0L, 7, x);
    return series;
  }
  Real Integral(Real low) const {
    const Real scale = low / (1 + rate_ * low), rest = StirlingRest(low);
    const auto relative = [&](Real z) {
      const Real ahead = scale * z, x = low + ahead;
      return std::exp(-rate_ * ahead - 1.5L * std::log1p(ahead / low) - StirlingRest(x) + rest);
    };
    boost::math::quadrature::exp_sinh<Real> quadrature;
    // Of two successive results, the second has twice as many digits as they have in common.
    return Value(low) * scale * quadrature.integrate(relative, 1e-12L);
  }

 private:
  Real rate_;
};

/// The size of a family whose members have a Poisson number of children.
class Borel : public DiscreteDist {
 public:
  explicit Borel(double mean)
      : DiscreteDist(1, kInfinity),
        children_(mean),
        term_(-LogBeyondLinear(children_, children_ - 1)),
        total_(children_ * std::sqrt(2 * kPi)) {}

  DistLib::Moments Moments() const override {
    const Real m = children_, rest = 1 - m;
    if (rest == 0) {
      DistLib::Moments none;
      none.mode = 1;
      return none;
    }
    const Real second = m / (rest * rest * rest);
    DistLib::Moments moments =
        FromCumulants({1 / rest, second, second * (1 + 2 * m) / (rest * rest),
                       second * (1 + m * (8 + 6 * m)) / (rest * rest * rest * rest)},
                      1);
    moments.discrete_mean = WholeMean(1 / rest);
    return moments;
  }

 private:
  Scaled ProbabilityOf(Real k) const override { return term_.ScaledValue(k) / total_; }
  Real LowerTail(Real k) const override { return 1 - UpperTailBeyond(k); }
  Real UpperTailBeyond(Real k) const override { return EndlessSum(term_, k + 1) / total_; }

  Real children_;
  BorelTerm term_;
  Real total_;
};

}  // namespace

const Description kBorel{.name = "Borel",
                         .other_names = {},
                         .parameters = {{"mean", {.low = 0, .high = 1, .with_high = true}, {}}},
                         .kind = Kind::kDiscrete,
                         .support = "whole numbers from 1",
                         .formula = "f(x) = exp(-mean x) (mean x)^(x - 1) / x!",
                         .source = "Johnson, Kemp and Kotz 2005, 7.2",
                         .make = Make<Borel, 1>};

}  // namespace DistLib
