// Poisson and negative binomial, whose tails are incomplete gamma and beta functions.

#include "distributions/beta_tails.h"
#include "distributions/catalogue.h"
#include "distributions/cores.h"
#include "distributions/discrete_dist.h"
#include "distributions/poisson_tails.h"

namespace DistLib {
namespace {

class Poisson : public DiscreteDist {
 public:
  explicit Poisson(double mean) : DiscreteDist(0, kInfinity), mean_(mean) {}

  DistLib::Moments Moments() const override {
    return {.mean = mean_,
            .variance = mean_,
            .skewness = 1 / std::sqrt(mean_),
            .kurtosis = 3 + 1 / mean_,
            .mode = std::floor(mean_),
            .discrete_mean = WholeMean(mean_)};
  }

 private:
  Start SearchStart() const override { return StartOf(Moments()); }
  Scaled ProbabilityOf(Real k) const override { return PoissonPower(k, mean_); }
  Real LowerTail(Real k) const override { return PoissonLower(k, mean_); }
  Real UpperTailBeyond(Real k) const override { return PoissonUpper(k, mean_); }

  Real mean_;
};

/// The number of failures before so many successes; their number need not be whole.
class NegativeBinomial : public DiscreteDist {
 public:
  NegativeBinomial(double successes, double p)
      : DiscreteDist(0, kInfinity, p == 1 ? 0 : kInfinity), r_(successes), p_(p), q_(1 - p_) {}

  DistLib::Moments Moments() const override {
    const Real mean = r_ * q_ / p_;
    DistLib::Moments moments;
    moments.mean = mean;
    moments.variance = mean / p_;
    if (q_ > 0) {
      moments.skewness = (1 + q_) / std::sqrt(r_ * q_);
      moments.kurtosis = 3 + 6 / r_ + p_ * p_ / (r_ * q_);
    }
    moments.mode = r_ > 1 ? std::floor((r_ - 1) * q_ / p_) : 0;
    moments.discrete_mean = WholeMean(mean);
    return moments;
  }

 private:
  Start SearchStart() const override { return StartOf(Moments()); }
  Scaled ProbabilityOf(Real k) const override {
    if (q_ == 0) return {k == 0 ? 1.0L : 0};
    return NegativeBinomialTerm(At(k));
  }
  Real LowerTail(Real k) const override { return q_ == 0 ? 1 : BetaLower(At(k + 1)); }
  Real UpperTailBeyond(Real k) const override { return q_ == 0 ? 0 : BetaUpper(At(k + 1)); }

  /// p is split into two halves so that each product is exact.
  BetaPoint At(Real k) const {
    const Real high = static_cast<float>(p_), low = p_ - high;
    return {r_, k, p_, q_, (r_ - (r_ + k) * high) - (r_ + k) * low};
  }

  Real r_;
  Real p_;
  Real q_;
};

}  // namespace

const Description kPoisson{.name = "Poisson",
                           .other_names = {},
                           .parameters = {{"mean", kDegrees, {}}},
                           .kind = Kind::kDiscrete,
                           .support = "whole numbers from 0",
                           .formula = "f(x) = mean^x exp(-mean) / x!",
                           .source = "Johnson, Kemp and Kotz 2005, chapter 4",
                           .make = Make<Poisson, 1>};

const Description kNegativeBinomial{
    .name = "negative binomial",
    .other_names = {"Pascal", "Polya"},
    .parameters = {{"successes", kDegrees, {}},
                   {"probability", {.low = 0, .high = 1, .with_high = true}, {}}},
    .kind = Kind::kDiscrete,
    .support = "whole numbers from 0",
    .formula =
        "f(x) = gamma(successes + x) / (gamma(successes) x!) probability^successes "
        "(1 - probability)^x",
    .source = "Johnson, Kemp and Kotz 2005, chapter 5",
    .make = Make<NegativeBinomial, 2>};

}  // namespace DistLib
