#include <algorithm>
#include <boost/math/distributions/chi_squared.hpp>
#include <cmath>

#include "distributions/catalogue.h"
#include "distributions/positive_dist.h"

namespace DistLib {
namespace {

class Chisq : public PositiveDist {
 public:
  explicit Chisq(double df) : chi_squared_(df) {}

  DistLib::Moments Moments() const override {
    const Real df = chi_squared_.degrees_of_freedom();
    return {.mean = df,
            .variance = 2 * df,
            .skewness = std::sqrt(8 / df),
            .kurtosis = 3 + 12 / df,
            .mode = std::max<Real>(df - 2, 0),
            .discrete_mean = {}};
  }

 private:
  Real DensityAt(Real x) const override { return pdf(chi_squared_, x); }
  Real CumulativeAt(Real x) const override { return cdf(chi_squared_, x); }
  Real UpperTailAt(Real x) const override { return cdf(complement(chi_squared_, x)); }
  /// Wilson and Hilferty: the cube root is approximately normal.
  Real ValueNear(Real z) const override {
    const Real df = chi_squared_.degrees_of_freedom(), variance = 2 / (9 * df);
    const Real root = std::max(1 - variance + z * std::sqrt(variance), 0.01L);
    return df * root * root * root;
  }
  Real Growth(Real x) const override { return (chi_squared_.degrees_of_freedom() - x) / 2; }

  boost::math::chi_squared_distribution<Real> chi_squared_;
};

}  // namespace

const Description kChiSquare{
    .name = "chi-square",
    .other_names = {"chi-squared", "chisq"},
    .parameters = {{"df", kDegrees, {}}},
    .support = "numbers from 0",
    .formula = "f(x) = (x / 2)^(df / 2 - 1) exp(-x / 2) / (2 gamma(df / 2))",
    .source = "Johnson, Kotz and Balakrishnan, Continuous Univariate Distributions 1, chapter 18",
    .make = Make<Chisq, 1>};

}  // namespace DistLib
