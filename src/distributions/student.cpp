#include <boost/math/distributions/students_t.hpp>
#include <cmath>
#include <numbers>

#include "distributions/transformed.h"

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
  explicit Student(double df) : Student(df, 0, 1) {}
  Student(double df, double location, double scale)
      : PdfDist(-kInfinity, kInfinity), df_(df), place_{location, scale} {}

  DistLib::Moments Moments() const override {
    const Real df = df_.degrees_of_freedom();
    DistLib::Moments moments;
    moments.mode = 0;
    if (df > 1) moments.mean = 0;
    if (df > 2) moments.variance = df / (df - 2);
    if (df > 3) moments.skewness = 0;
    if (df > 4) moments.kurtosis = 3 + 6 / (df - 4);
    return Moved(moments, place_.location, place_.scale);
  }

 private:
  Real DensityAt(Real x) const override { return pdf(df_, Standardized(x)) / place_.scale; }
  Real CumulativeAt(Real x) const override { return Tail(-Standardized(x)); }
  Real UpperTailAt(Real x) const override { return Tail(Standardized(x)); }
  Real QuantileOf(Real p) const override { return place_.At(quantile(df_, p)); }
  Real UpperQuantileOf(Real q) const override { return place_.At(-quantile(df_, q)); }

  Real Standardized(Real x) const { return (x - place_.location) / place_.scale; }
  Real Tail(Real z) const {
    return df_.degrees_of_freedom() == 1 ? CauchyUpperTail(z) : cdf(complement(df_, z));
  }

  boost::math::students_t_distribution<Real> df_;
  Place place_;
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

const Description kLocationScaleStudent{
    .name = "location-scale Student",
    .other_names = {"Student with location and scale", "location-scale t"},
    .parameters = {{"df", kDegrees, {}}, {"location", kAnyNumber, 0.0}, {"scale", kPositive, 1.0}},
    .support = "all numbers",
    .formula = "(x - location) / scale has the Student distribution with df",
    .source = "Johnson, Kotz and Balakrishnan, Continuous Univariate Distributions 2, chapter 28",
    .make = Make<Student, 3>};

}  // namespace DistLib
