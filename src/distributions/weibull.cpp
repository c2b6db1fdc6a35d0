// Exponential, Weibull, Rayleigh: powers of the unit exponential.

#include "distributions/transformed.h"

namespace DistLib {
namespace {

class Weibull : public Transformed<UnitExponential, PowerMap> {
 public:
  Weibull(double shape, double scale, double location)
      : Weibull(Real{shape}, {.location = location, .scale = scale}) {}
  Weibull(double shape, double scale) : Weibull(shape, scale, 0) {}

 protected:
  Weibull(Real shape, Place place) : Transformed({}, {1 / shape}, place), shape_(shape) {}

 private:
  DistLib::Moments StandardMoments() const override {
    if (shape_ == 1)
      return {
          .mean = 1, .variance = 1, .skewness = 2, .kurtosis = 9, .mode = 0, .discrete_mean = {}};
    const Real mode = shape_ > 1 ? std::pow(1 - 1 / shape_, 1 / shape_) : 0;
    return FromRawMoments([this](int r) { return std::tgamma(1 + r / shape_); }, 5, mode);
  }
  std::optional<Real> StandardEntropy() const override {
    return 1 + kEuler * (1 - 1 / shape_) - std::log(shape_);
  }

  Real shape_;
};

class Exponential : public Weibull {
 public:
  explicit Exponential(double rate) : Weibull(1.0L, {.location = 0, .scale = 1.0L / rate}) {}
};

class Rayleigh : public Weibull {
 public:
  explicit Rayleigh(double scale)
      : Weibull(2.0L, {.location = 0, .scale = scale * std::numbers::sqrt2_v<Real>}) {}
};

}  // namespace

const Description kExponential{.name = "exponential",
                               .other_names = {"negative exponential"},
                               .parameters = {{"rate", kPositive, 1.0}},
                               .support = "numbers from 0",
                               .formula = "F(x) = 1 - exp(-rate x)",
                               .source = "Johnson, Kotz and Balakrishnan 1994, chapter 19",
                               .make = Make<Exponential, 1>};

const Description kRayleigh{.name = "Rayleigh",
                            .other_names = {},
                            .parameters = {{"scale", kPositive, 1.0}},
                            .support = "numbers from 0",
                            .formula = "F(x) = 1 - exp(-(x / scale)^2 / 2)",
                            .source = "Johnson, Kotz and Balakrishnan 1994, chapter 18",
                            .make = Make<Rayleigh, 1>};

const Description kWeibull{.name = "Weibull",
                           .other_names = {"Weibull 2P"},
                           .parameters = {{"shape", kPositive, {}}, {"scale", kPositive, 1.0}},
                           .support = "numbers from 0",
                           .formula = "F(x) = 1 - exp(-(x / scale)^shape)",
                           .source = "Johnson, Kotz and Balakrishnan 1994, chapter 21",
                           .make = Make<Weibull, 2>};

const Description kWeibull3{.name = "three-parameter Weibull",
                            .other_names = {"Weibull 3P"},
                            .parameters = {{"shape", kPositive, {}},
                                           {"scale", kPositive, 1.0},
                                           {"location", kAnyNumber, 0.0}},
                            .support = "numbers from location",
                            .formula = "F(x) = 1 - exp(-((x - location) / scale)^shape)",
                            .source = "Johnson, Kotz and Balakrishnan 1994, chapter 21",
                            .make = Make<Weibull, 3>};

}  // namespace DistLib
