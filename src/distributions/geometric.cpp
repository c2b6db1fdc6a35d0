// Discrete distributions in elementary terms: Bernoulli, geometric and uniform.

#include "distributions/catalogue.h"
#include "distributions/cores.h"
#include "distributions/discrete_dist.h"

namespace DistLib {
namespace {

/// x log(x), 0 at 0.
Real TimesOwnLog(Real x) { return TimesLog(x, x); }

class Bernoulli : public DiscreteDist {
 public:
  explicit Bernoulli(double p)
      : DiscreteDist(0, 1, p == 0 ? 0 : 1), success_(p), failure_(1 - success_) {}

  DistLib::Moments Moments() const override {
    const Real variance = success_ * failure_;
    DistLib::Moments moments;
    moments.mean = success_;
    moments.variance = variance;
    if (variance > 0) {
      moments.skewness = (failure_ - success_) / std::sqrt(variance);
      moments.kurtosis = 1 / variance - 3;
    }
    moments.mode = success_ > failure_ ? 1 : 0;
    moments.discrete_mean = WholeMean(success_);
    return moments;
  }
  std::optional<Real> Entropy() const override {
    return -TimesOwnLog(success_) - TimesOwnLog(failure_);
  }

 private:
  Scaled ProbabilityOf(Real k) const override { return {k == 1 ? success_ : failure_}; }
  Real LowerTail(Real k) const override { return k == 1 ? 1 : failure_; }
  Real UpperTailBeyond(Real k) const override { return k == 1 ? 0 : success_; }

  Real success_;
  Real failure_;
};

/// The number of failures before the first success.
class Geometric : public DiscreteDist {
 public:
  explicit Geometric(double p)
      : DiscreteDist(0, kInfinity, p == 1 ? 0 : kInfinity), p_(p), log_failure_(std::log1p(-p_)) {}

  DistLib::Moments Moments() const override {
    const Real q = 1 - p_, mean = q / p_;
    DistLib::Moments moments;
    moments.mean = mean;
    moments.variance = mean / p_;
    if (q > 0) {
      moments.skewness = (1 + q) / std::sqrt(q);
      moments.kurtosis = 9 + p_ * p_ / q;
    }
    moments.mode = 0;
    moments.discrete_mean = WholeMean(mean);
    return moments;
  }
  std::optional<Real> Entropy() const override {
    return -(TimesOwnLog(p_) + TimesOwnLog(1 - p_)) / p_;
  }

 private:
  /// The logarithm of the probability that so many trials fail.
  Real LogSurvival(Real trials) const { return trials == 0 ? 0 : trials * log_failure_; }
  Scaled ProbabilityOf(Real k) const override { return {p_, LogSurvival(k)}; }
  Real LowerTail(Real k) const override { return -std::expm1((k + 1) * log_failure_); }
  Real UpperTailBeyond(Real k) const override { return std::exp(LogSurvival(k + 1)); }

  Real p_;
  Real log_failure_;
};

class DiscreteUniform : public DiscreteDist {
 public:
  DiscreteUniform(double lower, double upper)
      : DiscreteDist((RequireAbove("upper", upper + 1, "lower", lower), lower), upper),
        lower_(lower),
        upper_(upper),
        count_(upper_ - lower_ + 1) {}

  DistLib::Moments Moments() const override {
    const Real square = count_ * count_, mean = (lower_ + upper_) / 2;
    DistLib::Moments moments;
    moments.mean = mean;
    moments.variance = (square - 1) / 12;
    if (count_ > 1) {
      moments.skewness = 0;
      moments.kurtosis = 1.8L - 2.4L / (square - 1);
    }
    moments.discrete_mean = WholeMean(mean);
    return moments;
  }
  std::optional<Real> Entropy() const override { return std::log(count_); }

 private:
  Scaled ProbabilityOf(Real /*k*/) const override { return {1 / count_}; }
  Real LowerTail(Real k) const override { return (k - lower_ + 1) / count_; }
  Real UpperTailBeyond(Real k) const override { return (upper_ - k) / count_; }

  Real lower_;
  Real upper_;
  Real count_;
};

constexpr Domain kWhole{
    .low = -0x1p52, .high = 0x1p52, .with_low = true, .with_high = true, .whole = true};

}  // namespace

const Description kBernoulli{.name = "Bernoulli",
                             .other_names = {},
                             .parameters = {{"probability", kProbability, {}}},
                             .kind = Kind::kDiscrete,
                             .support = "0 and 1",
                             .formula = "f(1) = probability, f(0) = 1 - probability",
                             .source = "Johnson, Kemp and Kotz 2005, chapter 3",
                             .make = Make<Bernoulli, 1>};

const Description kGeometric{
    .name = "geometric",
    .other_names = {},
    .parameters = {{"probability", {.low = 0, .high = 1, .with_high = true}, {}}},
    .kind = Kind::kDiscrete,
    .support = "whole numbers from 0",
    .formula = "f(x) = probability (1 - probability)^x, the failures before the first success",
    .source = "Johnson, Kemp and Kotz 2005, chapter 5",
    .make = Make<Geometric, 1>};

const Description kDiscreteUniform{.name = "discrete uniform",
                                   .other_names = {},
                                   .parameters = {{"lower", kWhole, {}}, {"upper", kWhole, {}}},
                                   .kind = Kind::kDiscrete,
                                   .support = "whole numbers from lower to upper",
                                   .formula = "f(x) = 1 / (upper - lower + 1)",
                                   .source = "Johnson, Kemp and Kotz 2005, chapter 6",
                                   .make = Make<DiscreteUniform, 2>};

}  // namespace DistLib
