#include <algorithm>
#include <cmath>

#include "distributions/beta_tails.h"
#include "distributions/catalogue.h"

namespace DistLib {
namespace {

class Binomial : public PdfDist {
 public:
  Binomial(double n, double p) : PdfDist(0, n, p == 0 ? 0 : n), n_(n), p_(p), q_(1 - p_) {}

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
    // Rounds the mean as a double: 5 trials with 0.3 have the mean 1.5, although the double 0.3 is
    // a little less.
    moments.discrete_mean = std::floor(static_cast<double>(n_ * p_) + 0.5L);
    return moments;
  }

 private:
  Real DensityAt(Real x) const override {
    if (x != std::floor(x)) return 0;
    if (Certain()) return x == n_ * p_ ? 1 : 0;
    if (x == 0) return std::exp(n_ * std::log1p(-p_));
    if (x == n_) return std::exp(n_ * std::log(p_));
    return BetaPower(At(x, n_ - x)) * (n_ / x / (n_ - x));
  }
  Real CumulativeAt(Real x) const override {
    const Real k = std::floor(x);
    if (Certain()) return k >= n_ * p_ ? 1 : 0;
    if (k == n_) return 1;
    if (k == 0) return DensityAt(0);
    return BetaUpper(At(k + 1, n_ - k));
  }
  Real UpperTailAt(Real x) const override {
    const Real k = std::floor(x);
    if (Certain()) return k >= n_ * p_ ? 0 : 1;
    if (k == n_) return 0;
    return BetaLower(At(k + 1, n_ - k));
  }
  Real QuantileOf(Real p) const override {
    return Smallest([&](double k) { return Cumulative(k) >= p; });
  }
  Real UpperQuantileOf(Real q) const override {
    return Smallest([&](double k) { return UpperTail(k) <= q; });
  }

  /// Only one value is possible.
  bool Certain() const { return n_ == 0 || p_ == 0 || q_ == 0; }

  /// For whole a and b. p is split into two halves so that each product is exact.
  BetaPoint At(Real a, Real b) const {
    const Real high = static_cast<float>(p_), low = p_ - high;
    return {a, b, p_, q_, (a - (a + b) * high) - (a + b) * low};
  }

  template <class Reached>
  Real Smallest(Reached reached) const {
    double low = -1, high = static_cast<double>(n_);  // not reached at low, reached at high
    while (high - low > 1) {
      const double middle = std::floor((low + high) / 2);
      (reached(middle) ? high : low) = middle;
    }
    return high;
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
