// Logistic, log-logistic and generalised logistic.

#include <boost/math/special_functions/digamma.hpp>
#include <boost/math/special_functions/polygamma.hpp>

#include "distributions/transformed.h"

namespace DistLib {
namespace {

class Logistic : public Transformed<StandardLogistic, Identity> {
 public:
  Logistic(double location, double scale) : Transformed({}, {}, {location, scale}) {}

 private:
  DistLib::Moments StandardMoments() const override {
    return {.mean = 0,
            .variance = kPi * kPi / 3,
            .skewness = 0,
            .kurtosis = 4.2L,
            .mode = 0,
            .discrete_mean = {}};
  }
  std::optional<Real> StandardEntropy() const override { return 2; }
};

class LogLogistic : public Transformed<StandardLogistic, ExpMap> {
 public:
  LogLogistic(double shape, double scale)
      : Transformed({}, {.factor = 1 / Real{shape}}, {0, scale}), shape_(shape) {}

 private:
  DistLib::Moments StandardMoments() const override {
    const Real mode = shape_ > 1 ? std::pow((shape_ - 1) / (shape_ + 1), 1 / shape_) : 0;
    const auto raw = [this](int r) {
      const Real angle = r * kPi / shape_;
      return angle / std::sin(angle);
    };
    return FromRawMoments(raw, shape_, mode);
  }
  std::optional<Real> StandardEntropy() const override { return 2 - std::log(shape_); }

  Real shape_;
};

/// z = -log(exp(x / shape) - 1), without exponentials of large numbers
struct SkewLogisticMap {
  Real shape;

  static bool Rises() { return false; }
  Real Forward(Real x) const {
    const Real y = x / shape;
    return y > 1 ? -y - std::log1p(-std::exp(-y)) : -std::log(std::expm1(y));
  }
  Real Back(Real z) const { return shape * (std::fmax(-z, 0) + LogRest(z)); }
  Real LogSlope(Real z, Real /*x*/) const { return std::log(shape) - std::fmax(z, 0) - LogRest(z); }

 private:
  static Real LogRest(Real z) { return std::log1p(std::exp(-std::fabs(z))); }
};

/// The power of the logistic probability.
class GeneralizedLogistic : public Transformed<UnitExponential, SkewLogisticMap> {
 public:
  GeneralizedLogistic(double location, double scale, double shape)
      : Transformed({}, {shape}, {location, scale}), shape_(shape) {}

 private:
  DistLib::Moments StandardMoments() const override {
    Real cumulants[4];
    for (int i = 0; i < 4; ++i) {
      const Real sign = i % 2 == 0 ? -1 : 1;
      cumulants[i] = boost::math::polygamma(i, shape_) + sign * boost::math::polygamma(i, Real{1});
    }
    return FromCumulants(cumulants, std::log(shape_));
  }
  std::optional<Real> StandardEntropy() const override {
    return 1 + 1 / shape_ + kEuler + boost::math::digamma(shape_) - std::log(shape_);
  }

  Real shape_;
};

}  // namespace

const Description kLogistic{
    .name = "logistic",
    .other_names = {},
    .parameters = {{"location", kAnyNumber, 0.0}, {"scale", kPositive, 1.0}},
    .support = "all numbers",
    .formula = "F(x) = 1 / (1 + exp(-(x - location) / scale))",
    .source = "Johnson, Kotz and Balakrishnan 1995, chapter 23",
    .make = Make<Logistic, 2>};

const Description kLogLogistic{.name = "log-logistic",
                               .other_names = {"Fisk"},
                               .parameters = {{"shape", kPositive, {}}, {"scale", kPositive, 1.0}},
                               .support = "numbers from 0",
                               .formula = "F(x) = 1 / (1 + (x / scale)^-shape)",
                               .source = "Kleiber and Kotz 2003, section 6.4",
                               .make = Make<LogLogistic, 2>};

const Description kGeneralizedLogistic{
    .name = "generalised logistic",
    .other_names = {"generalized logistic", "skew-logistic", "generalised logistic type I"},
    .parameters = {{"location", kAnyNumber, 0.0},
                   {"scale", kPositive, 1.0},
                   {"shape", kPositive, 1.0}},
    .support = "all numbers",
    .formula = "F(x) = (1 + exp(-(x - location) / scale))^-shape",
    .source = "Johnson, Kotz and Balakrishnan 1995, chapter 23",
    .make = Make<GeneralizedLogistic, 3>};

}  // namespace DistLib
