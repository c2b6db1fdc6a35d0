// Frechet, also called inverse Weibull: negative powers of the unit exponential.

#include "distributions/transformed.h"

namespace DistLib {
namespace {

class Frechet : public Transformed<UnitExponential, PowerMap> {
 public:
  Frechet(double shape, double scale, double location)
      : Transformed({}, {-1 / Real{shape}}, {.location = location, .scale = scale}),
        shape_(shape) {}
  Frechet(double shape, double scale) : Frechet(shape, scale, 0) {}

 private:
  DistLib::Moments StandardMoments() const override {
    const Real mode = std::pow(shape_ / (1 + shape_), 1 / shape_);
    return FromRawMoments([this](int r) { return std::tgamma(1 - r / shape_); }, shape_, mode);
  }
  std::optional<Real> StandardEntropy() const override {
    return 1 + kEuler * (1 + 1 / shape_) - std::log(shape_);
  }

  Real shape_;
};

}  // namespace

const Description kFrechet{.name = "Frechet",
                           .other_names = {"extreme value type II"},
                           .parameters = {{"shape", kPositive, {}},
                                          {"scale", kPositive, 1.0},
                                          {"location", kAnyNumber, 0.0}},
                           .support = "numbers from location",
                           .formula = "F(x) = exp(-((x - location) / scale)^-shape)",
                           .source = "Johnson, Kotz and Balakrishnan 1995, chapter 22",
                           .make = Make<Frechet, 3>};

const Description kInverseWeibull{
    .name = "inverse Weibull",
    .other_names = {"reciprocal Weibull"},
    .parameters = {{"shape", kPositive, {}}, {"scale", kPositive, 1.0}},
    .support = "numbers from 0",
    .formula = "F(x) = exp(-(x / scale)^-shape)",
    .source = "Johnson, Kotz and Balakrishnan 1995, chapter 22",
    .make = Make<Frechet, 2>};

}  // namespace DistLib
