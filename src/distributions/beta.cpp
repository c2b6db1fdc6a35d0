// Beta on any interval; PERT and Wigner's semicircle are special cases.

#include <boost/math/special_functions/digamma.hpp>

#include "distributions/beta_prime.h"
#include "distributions/bounded.h"

namespace DistLib {
namespace {

class Beta : public BoundedDist {
 public:
  Beta(double a, double b, double lower, double upper)
      : Beta(Real{a}, Real{b}, (RequireAbove("upper", upper, "lower", lower), lower), upper) {}
  Beta(double a, double b) : Beta(a, b, 0, 1) {}

  DistLib::Moments Moments() const override;
  std::optional<Real> Entropy() const override {
    using boost::math::digamma;
    const Real log_beta = std::lgamma(a_) + std::lgamma(b_) - std::lgamma(a_ + b_);
    return log_beta - (a_ - 1) * digamma(a_) - (b_ - 1) * digamma(b_) +
           (a_ + b_ - 2) * digamma(a_ + b_) + std::log(width());
  }

 protected:
  Beta(Real a, Real b, double lower, double upper)
      : BoundedDist(lower, upper), a_(a), b_(b), rest_(BetaRest(a, b)), odds_(a, b) {}

 private:
  Real DensityAt(Real x) const override;
  Real CumulativeAt(Real x) const override { return BetaLower(PointAt(x)); }
  Real UpperTailAt(Real x) const override { return BetaUpper(PointAt(x)); }
  Real QuantileOf(Real p) const override { return AtOdds(odds_.Quantile(static_cast<double>(p))); }
  Real UpperQuantileOf(Real q) const override {
    return AtOdds(odds_.UpperQuantile(static_cast<double>(q)));
  }

  std::optional<Real> Mode() const;
  Real AtOdds(Real odds) const {
    return odds > 0 ? Value({width() / (1 + 1 / odds), width() / (1 + odds)}) : low();
  }
  BetaPoint PointAt(Real value) const {
    const auto [from_low, from_high] = At(value);
    const Real x = from_low / width(), y = from_high / width();
    return {a_, b_, x, y, a_ * y - b_ * x, rest_};
  }

  Real a_;
  Real b_;
  Real rest_;
  BetaPrime odds_;
};

Moments Beta::Moments() const {
  const Real n = a_ + b_, product = a_ * b_, difference = b_ - a_;
  DistLib::Moments moments;
  moments.mean = low() + width() * (a_ / n);
  moments.variance = width() * width() * (product / (n * n)) / (n + 1);
  moments.skewness = 2 * difference / (n + 2) * std::sqrt((n + 1) / product);
  moments.kurtosis = 3 + 6 * (difference * difference * (n + 1) - product * (n + 2)) /
                             (product * (n + 2) * (n + 3));
  if (const std::optional<Real> mode = Mode()) moments.mode = low() + width() * *mode;
  return moments;
}

std::optional<Real> Beta::Mode() const {
  if (a_ > 1 && b_ > 1) return (a_ - 1) / (a_ + b_ - 2);
  if (a_ < 1 && b_ < 1) return {};  // both ends are without bound
  if (a_ == 1 && b_ == 1) return {};
  return a_ > b_ ? 1 : 0;
}

Real Beta::DensityAt(Real x) const {
  const BetaPoint point = PointAt(x);
  if (point.x > 0 && point.y > 0) return BetaPower(point).Value() / point.x / point.y / width();
  const Real shape = point.x > 0 ? b_ : a_, other = point.x > 0 ? a_ : b_;
  if (shape == 1) return other / width();
  return shape < 1 ? kRealInfinity : 0;
}

class Pert : public Beta {
 public:
  Pert(double lower, double mode, double upper, double weight)
      : Beta(Shape(lower, mode, upper, weight, Real{mode} - lower),
             Shape(lower, mode, upper, weight, Real{upper} - mode), lower, upper) {}

 private:
  static Real Shape(double lower, double mode, double upper, double weight, Real distance) {
    RequireAbove("upper", upper, "lower", lower);
    if (mode < lower || mode > upper)
      throw ParameterError("mode", "must be between lower and upper", mode);
    return 1 + weight * (distance / (Real{upper} - lower));
  }
};

class Semicircle : public Beta {
 public:
  explicit Semicircle(double radius) : Beta(1.5L, 1.5L, -radius, radius) {}
};

}  // namespace

const Description kBeta{.name = "beta",
                        .other_names = {"beta 2P", "Pearson type I"},
                        .parameters = {{"shape1", kDegrees, {}}, {"shape2", kDegrees, {}}},
                        .support = "numbers from 0 to 1",
                        .formula = "f(x) = x^(shape1 - 1) (1 - x)^(shape2 - 1) / B(shape1, shape2)",
                        .source = "Johnson, Kotz and Balakrishnan 1995, chapter 25",
                        .make = Make<Beta, 2>};

const Description kBeta4{
    .name = "four-parameter beta",
    .other_names = {"beta 4P"},
    .parameters = {{"shape1", kDegrees, {}},
                   {"shape2", kDegrees, {}},
                   {"lower", kAnyNumber, 0.0},
                   {"upper", kAnyNumber, 1.0}},
    .support = "numbers from lower to upper",
    .formula = "(x - lower) / (upper - lower) has the beta distribution with shape1 and shape2",
    .source = "Johnson, Kotz and Balakrishnan 1995, chapter 25",
    .make = Make<Beta, 4>};

const Description kPert{
    .name = "PERT",
    .other_names = {"beta-PERT"},
    .parameters = {{"lower", kAnyNumber, {}},
                   {"mode", kAnyNumber, {}},
                   {"upper", kAnyNumber, {}},
                   {"weight", {.low = 0, .high = 1e9, .with_low = true, .with_high = true}, 4.0}},
    .support = "numbers from lower to upper",
    .formula =
        "four-parameter beta with shape1 1 + weight (mode - lower) / (upper - lower) and "
        "shape2 1 + weight (upper - mode) / (upper - lower)",
    .source = "Malcolm, Roseboom, Clark and Fazar 1959, Operations Research 7, 646-669",
    .make = Make<Pert, 4>};

const Description kSemicircle{.name = "Wigner semicircle",
                              .other_names = {"semicircle"},
                              .parameters = {{"radius", kPositive, 1.0}},
                              .support = "numbers from -radius to radius",
                              .formula = "f(x) = 2 sqrt(radius^2 - x^2) / (pi radius^2)",
                              .source = "Wigner 1958, Annals of Mathematics 67, 325-327",
                              .make = Make<Semicircle, 1>};

}  // namespace DistLib
