#include <boost/math/special_functions/expint.hpp>

#include "distributions/catalogue.h"
#include "distributions/cores.h"
#include "distributions/discrete_dist.h"
#include "distributions/endless_sum.h"
#include "distributions/moments.h"

namespace DistLib {
namespace {

/// e^(-rate x) / x.
class DampedReciprocal {
 public:
  explicit DampedReciprocal(Real rate) : rate_(rate) {}

  Scaled ScaledValue(Real x) const { return {1 / x, -rate_ * x}; }
  Real Value(Real x) const { return ScaledValue(x).Value(); }
  /// Terms that fall fast need nothing else.
  Real EnoughFrom() const { return rate_ > 0.5L ? kRealInfinity : 64; }
  Real Integral(Real x) const { return boost::math::expint(1, rate_ * x); }
  Taylor Series(Real x) const {
    Taylor series{-rate_};
    AddLog(series, -1, x);
    return series;
  }

 private:
  Real rate_;
};

class Logarithmic : public DiscreteDist {
 public:
  explicit Logarithmic(double p)
      : DiscreteDist(1, kInfinity), p_(p), total_(-std::log1p(-p_)), term_(-std::log(p_)) {}

  DistLib::Moments Moments() const override {
    const Real odds = p_ / (1 - p_), mean = odds / total_;
    // E[X (X - 1) ... (X - r + 1)] is mean (r - 1)! odds^(r - 1).
    const auto raw = [&](int r) {
      if (r == 1) return mean;
      if (r == 2) return mean * (1 + odds);
      if (r == 3) return mean * (1 + odds * (3 + 2 * odds));
      return mean * (1 + odds * (7 + odds * (12 + 6 * odds)));
    };
    DistLib::Moments moments = FromRawMoments(raw, kRealInfinity, 1);
    moments.discrete_mean = WholeMean(mean);
    return moments;
  }

 private:
  Scaled ProbabilityOf(Real k) const override { return term_.ScaledValue(k) / total_; }
  Real LowerTail(Real k) const override {
    constexpr Real kShort = 100;  // beyond, even the smallest lower tail keeps its digits
    if (k > kShort) return 1 - UpperTailBeyond(k);
    Real sum = 0;
    for (Real i = 1; i <= k; ++i) sum += term_.Value(i);
    return sum / total_;
  }
  Real UpperTailBeyond(Real k) const override { return EndlessSum(term_, k + 1) / total_; }

  Real p_;
  Real total_;
  DampedReciprocal term_;
};

}  // namespace

const Description kLogarithmic{.name = "logarithmic",
                               .other_names = {"log-series"},
                               .parameters = {{"probability", kOpenProbability, {}}},
                               .kind = Kind::kDiscrete,
                               .support = "whole numbers from 1",
                               .formula = "f(x) = probability^x / (-x log(1 - probability))",
                               .source = "Johnson, Kemp and Kotz 2005, chapter 7",
                               .make = Make<Logarithmic, 1>};

}  // namespace DistLib
