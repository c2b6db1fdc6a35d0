#include <algorithm>
#include <cmath>

#include "distributions/beta_tails.h"
#include "distributions/catalogue.h"
#include "distributions/discrete_dist.h"

namespace DistLib {
namespace {

class Binomial : public DiscreteDist {
 public:
  Binomial(double n, double p) : DiscreteDist(0, n, p == 0 ? 0 : n), n_(n), p_(p), q_(1 - p_) {}

  DistLib::Moments Moments() const override {
    const Real variance = n_ * p_ * q_;
    DistLib::Moments moments;
    moments.mean = n_ * p_;
    moments.variance = variance;
    if (variance > 0) {
      moments.skewness = (q_ - p_) / std::sqrt(variance);
      moments.kurtosis = 3 + (1 - 6 * p_ * q_) / variance;
    }
    moments.mode = std::min(std::floor((n_ + 1) * p_), n_);
    moments.discrete_mean = WholeMean(n_ * p_);
    return moments;
  }

 private:
  Start SearchStart() const override { return {n_ * p_, std::sqrt(n_ * p_ * q_)}; }
  Scaled ProbabilityOf(Real k) const override {
    if (Certain()) return {k == n_ * p_ ? 1.0L : 0};
    if (k == 0) return {1, n_ * std::log1p(-p_)};
    if (k == n_) return {1, n_ * std::log(p_)};
    return BetaPower(At(k, n_ - k)) * (n_ / k / (n_ - k));
  }
  Real LowerTail(Real k) const override {
    if (Certain()) return k >= n_ * p_ ? 1 : 0;
    if (k == n_) return 1;
    if (k == 0) return ProbabilityOf(0).Value();
    return BetaUpper(At(k + 1, n_ - k));
  }
  Real UpperTailBeyond(Real k) const override {
    if (Certain()) return k >= n_ * p_ ? 0 : 1;
    if (k == n_) return 0;
    return BetaLower(At(k + 1, n_ - k));
  }

  /// Only one value is possible.
  bool Certain() const { return n_ == 0 || p_ == 0 || q_ == 0; }

  /// For whole a and b. p is split into two halves so that each product is exact.
  BetaPoint At(Real a, Real b) const {
    const Real high = static_cast<float>(p_), low = p_ - high;
    return {a, b, p_, q_, (a - (a + b) * high) - (a + b) * low};
  }

  Real n_;
  Real p_;
  Real q_;
};

}  // namespace

const Description kBinomial{
    .name = "binomial",
    .other_names = {},
    .parameters = {{"trials", kTrials, {}}, {"probability", kProbability, {}}},
    .kind = Kind::kDiscrete,
    .support = "whole numbers from 0 to trials",
    .formula = "f(x) = choose(trials, x) probability^x (1 - probability)^(trials - x)",
    .source = "Johnson, Kemp and Kotz, Univariate Discrete Distributions, chapter 3",
    .make = Make<Binomial, 2>};

}  // namespace DistLib
