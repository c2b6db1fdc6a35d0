#include <boost/math/distributions/students_t.hpp>
#include <cmath>
#include <numbers>
#include "distributions/catalogue.h"

namespace DistLib {
namespace {

/// The distribution with one degree of freedom. The incomplete beta function, which the others use,
/// is computed through arcsine in this case and loses x if its square vanishes compared with 1.
Real CauchyUpperTail(Real x) {
  constexpr Real kPi = std::numbers::pi_v<Real>;
  return x > 1 ? std::atan(1 / x) / kPi : 0.5L - std::atan(x) / kPi;
}

class Student : public PdfDist {
 public:
  explicit Student(double df) : PdfDist(-kInfinity, kInfinity), df_(df) {}

  DistLib::Moments Moments() const override {
    const Real df = df_.degrees_of_freedom();
    DistLib::Moments moments;
    moments.mode = 0;
    if (df > 1) moments.mean = 0;
    if (df > 2) moments.variance = df / (df - 2);
    if (df > 3) moments.skewness = 0;
    if (df > 4) moments.kurtosis = 3 + 6 / (df - 4);
    return moments;
  }

 private:
  Real DensityAt(Real x) const override { return pdf(df_, x); }
  Real CumulativeAt(Real x) const override { return UpperTailAt(-x); }
  Real UpperTailAt(Real x) const override {
    return df_.degrees_of_freedom() == 1 ? CauchyUpperTail(x) : cdf(complement(df_, x));
  }
  Real QuantileOf(Real p) const override { return quantile(df_, p); }
  Real UpperQuantileOf(Real q) const override { return 0 - QuantileOf(q); }

  boost::math::students_t_distribution<Real> df_;
};

}  // namespace

const Description kStudent{
    .name = "Student",
    .other_names = {"Student t", "t"},
    .parameters = {{"df", kDegrees, {}}},
    .support = "all numbers",
    .formula =
        "f(x) = gamma((df + 1) / 2) / (sqrt(df pi) gamma(df / 2)) (1 + x^2 / df)^(-(df + 1) "
        "/ 2)",
    .source = "Johnson, Kotz and Balakrishnan, Continuous Univariate Distributions 2, chapter 28",
    .make = Make<Student, 1>};

}  // namespace DistLib
