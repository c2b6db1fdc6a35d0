// Generalised Pareto, and its relatives by other parameters: Pareto and Lomax.

#include "distributions/transformed.h"

namespace DistLib {
namespace {

class GeneralizedPareto : public Transformed<UnitExponential, Expm1Map> {
 public:
  GeneralizedPareto(double location, double scale, double shape)
      : GeneralizedPareto(Real{shape}, {location, scale}) {}

 protected:
  GeneralizedPareto(Real shape, Place place)
      : Transformed({}, {shape, shape}, place), shape_(shape) {}

 private:
  DistLib::Moments StandardMoments() const override {
    const Real k = shape_;
    DistLib::Moments moments;
    moments.mode = k < -1 ? -1 / k : 0;
    if (k < 1) moments.mean = 1 / (1 - k);
    if (2 * k < 1) moments.variance = 1 / ((1 - k) * (1 - k) * (1 - 2 * k));
    if (3 * k < 1) moments.skewness = 2 * (1 + k) * std::sqrt(1 - 2 * k) / (1 - 3 * k);
    if (4 * k < 1)
      moments.kurtosis = 3 * (1 - 2 * k) * (2 * k * k + k + 3) / ((1 - 3 * k) * (1 - 4 * k));
    return moments;
  }
  std::optional<Real> StandardEntropy() const override { return 1 + shape_; }

  Real shape_;
};

class Pareto : public GeneralizedPareto {
 public:
  Pareto(double shape, double minimum)
      : GeneralizedPareto(1 / Real{shape}, {minimum, minimum / Real{shape}}) {}
};

class Lomax : public GeneralizedPareto {
 public:
  Lomax(double shape, double scale)
      : GeneralizedPareto(1 / Real{shape}, {0, scale / Real{shape}}) {}
};

}  // namespace

const Description kGeneralizedPareto{
    .name = "generalised Pareto",
    .other_names = {"generalized Pareto", "GPD"},
    .parameters = {{"location", kAnyNumber, 0.0},
                   {"scale", kPositive, 1.0},
                   {"shape", kAnyNumber, 0.0}},
    .support = "numbers from location; to location - scale / shape if the shape is negative",
    .formula = "F(x) = 1 - (1 + shape (x - location) / scale)^(-1 / shape)",
    .source = "Johnson, Kotz and Balakrishnan 1994, chapter 20",
    .make = Make<GeneralizedPareto, 3>};

const Description kPareto{.name = "Pareto",
                          .other_names = {"Pareto type I"},
                          .parameters = {{"shape", kPositive, {}}, {"minimum", kPositive, 1.0}},
                          .support = "numbers from minimum",
                          .formula = "F(x) = 1 - (minimum / x)^shape",
                          .source = "Johnson, Kotz and Balakrishnan 1994, chapter 20",
                          .make = Make<Pareto, 2>};

const Description kLomax{.name = "Lomax",
                         .other_names = {"Pareto type II"},
                         .parameters = {{"shape", kPositive, {}}, {"scale", kPositive, 1.0}},
                         .support = "numbers from 0",
                         .formula = "F(x) = 1 - (1 + x / scale)^-shape",
                         .source = "Johnson, Kotz and Balakrishnan 1994, chapter 20",
                         .make = Make<Lomax, 2>};

}  // namespace DistLib
