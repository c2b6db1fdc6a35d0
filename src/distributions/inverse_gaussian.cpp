#include <boost/math/special_functions/expint.hpp>
#include <cmath>

#include "distributions/mills.h"
#include "distributions/search.h"

namespace DistLib {
namespace {

/// exp(x) times the integral of exp(-t) / t from x on.
Real ScaledExponentialIntegral(Real x) {
  constexpr Real kFar = 1000;
  if (x < kFar) return std::exp(x) * boost::math::expint(1, x);
  return (1 - (1 - (2 - (6 - 24 / x) / x) / x) / x) / x;
}

/// The first time at which a Brownian motion with drift reaches a distance. With a = sqrt(shape /
/// x) (x / mean - 1) and b = sqrt(shape / x) (x / mean + 1), the textbook's exp(2 shape / mean)
/// times the normal density at b is that at a, so both tails follow from it and Mills' ratio.
class InverseGaussian : public Searched<LogScale> {
 public:
  InverseGaussian(double mean, double shape)
      : Searched(LogScale{mean / (1 + mean / Real{shape})}), mean_(mean), shape_(shape) {}

  DistLib::Moments Moments() const override {
    const Real ratio = mean_ / shape_, half = 1.5L * ratio;
    return {.mean = mean_,
            .variance = ratio * mean_ * mean_,
            .skewness = 3 * std::sqrt(ratio),
            .kurtosis = 3 + 15 * ratio,
            .mode = mean_ / (std::hypot(1.0L, half) + half),
            .discrete_mean = {}};
  }
  std::optional<Real> Entropy() const override {
    const Real normal = std::log(2 * kPi / shape_ * mean_ * mean_ * mean_) + 1;
    return (normal - 3 * ScaledExponentialIntegral(2 * shape_ / mean_)) / 2;
  }

 private:
  Real Root(Real x) const { return std::sqrt(shape_ / x); }
  Real Score(Real x) const { return Root(x) * ((x - mean_) / mean_); }
  Real LogDensityAt(Real x) const override {
    if (x == 0) return -kRealInfinity;
    return StandardNormal::LogDensity(Score(x)) + std::log(Root(x) / x);
  }
  Real DensityAt(Real x) const override { return std::exp(LogDensityAt(x)); }
  Real CumulativeAt(Real x) const override {
    if (x == 0) return 0;
    const Real a = Score(x);
    if (a > 0) return 1 - UpperTailAt(x);
    return std::exp(StandardNormal::LogDensity(a)) * (MillsRatio(-a) + MillsRatio(a + 2 * Root(x)));
  }
  Real UpperTailAt(Real x) const override {
    constexpr Real kFar = -20;  // the ratio would overflow beyond it
    const Real a = x > 0 ? Score(x) : -kRealInfinity;
    if (a < kFar) return 1 - CumulativeAt(x);
    return std::exp(StandardNormal::LogDensity(a)) * MillsDifference(a, 2 * Root(x));
  }

  Real mean_;
  Real shape_;
};

class Wald : public InverseGaussian {
 public:
  explicit Wald(double shape) : InverseGaussian(1, shape) {}
};

}  // namespace

const Description kInverseGaussian{
    .name = "inverse Gaussian",
    .other_names = {"inverse normal"},
    .parameters = {{"mean", kPositive, {}}, {"shape", kPositive, 1.0}},
    .support = "numbers from 0",
    .formula = "f(x) = sqrt(shape / (2 pi x^3)) exp(-shape (x - mean)^2 / (2 mean^2 x))",
    .source = "Johnson, Kotz and Balakrishnan 1994, chapter 15",
    .make = Make<InverseGaussian, 2>};

const Description kWald{.name = "Wald",
                        .other_names = {"standard inverse Gaussian"},
                        .parameters = {{"shape", kPositive, {}}},
                        .support = "numbers from 0",
                        .formula = "the inverse Gaussian distribution with mean 1",
                        .source = "Johnson, Kotz and Balakrishnan 1994, chapter 15",
                        .make = Make<Wald, 1>};

}  // namespace DistLib
