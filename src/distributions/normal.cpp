#include <boost/math/distributions/normal.hpp>
#include <cmath>
#include <numbers>
#include "distributions/catalogue.h"

namespace DistLib {
namespace {

class Normal : public PdfDist {
 public:
  Normal(double mean, double standard_deviation)
      : PdfDist(-kInfinity, kInfinity), mean_(mean), deviation_(standard_deviation) {}

  DistLib::Moments Moments() const override {
    return {.mean = mean_,
            .variance = deviation_ * deviation_,
            .skewness = 0,
            .kurtosis = 3,
            .mode = mean_,
            .discrete_mean = {}};
  }
  std::optional<Real> Entropy() const override {
    return 0.5L + std::log(deviation_ * std::sqrt(2 * std::numbers::pi_v<Real>));
  }

 private:
  Real DensityAt(Real x) const override { return pdf(standard_, Score(x)) / deviation_; }
  Real LogDensityAt(Real x) const override {
    const Real z = Score(x);
    return -z * z / 2 - std::log(deviation_ * std::sqrt(2 * std::numbers::pi_v<Real>));
  }
  Real CumulativeAt(Real x) const override { return cdf(standard_, Score(x)); }
  Real UpperTailAt(Real x) const override { return cdf(complement(standard_, Score(x))); }
  Real QuantileOf(Real p) const override { return mean_ + deviation_ * quantile(standard_, p); }
  Real UpperQuantileOf(Real q) const override {
    return mean_ + deviation_ * quantile(complement(standard_, q));
  }

  Real Score(Real x) const { return (x - mean_) / deviation_; }

  boost::math::normal_distribution<Real> standard_;
  Real mean_;
  Real deviation_;
};

}  // namespace

const Description kNormal{
    .name = "normal",
    .other_names = {"Gaussian", "Gauss"},
    .parameters = {{"mean", kAnyNumber, 0.0}, {"standard deviation", kPositive, 1.0}},
    .support = "all numbers",
    .formula =
        "f(x) = exp(-((x - mean) / standard deviation)^2 / 2) / (standard deviation "
        "sqrt(2 pi))",
    .source = "Johnson, Kotz and Balakrishnan, Continuous Univariate Distributions 1, chapter 13",
    .make = Make<Normal, 2>};

}  // namespace DistLib
