// Cauchy, half-Cauchy, and the hyperbolic secant distribution, the logarithm of the half-Cauchy.

#include "distributions/transformed.h"

namespace DistLib {
namespace {

class Cauchy : public Transformed<StandardCauchy, Identity> {
 public:
  Cauchy(double location, double scale) : Transformed({}, {}, {location, scale}) {}

 private:
  DistLib::Moments StandardMoments() const override {
    DistLib::Moments moments;
    moments.mode = 0;
    return moments;
  }
  std::optional<Real> StandardEntropy() const override { return std::log(4 * kPi); }
};

class HalfCauchy : public Transformed<HalfCauchyCore, Identity> {
 public:
  explicit HalfCauchy(double scale) : Transformed({}, {}, {0, scale}) {}

 private:
  DistLib::Moments StandardMoments() const override {
    DistLib::Moments moments;
    moments.mode = 0;
    return moments;
  }
  std::optional<Real> StandardEntropy() const override { return std::log(2 * kPi); }
};

class HyperbolicSecant : public Transformed<HalfCauchyCore, LogMap> {
 public:
  HyperbolicSecant(double location, double scale) : Transformed({}, {2 / kPi}, {location, scale}) {}

 private:
  DistLib::Moments StandardMoments() const override {
    return {.mean = 0, .variance = 1, .skewness = 0, .kurtosis = 5, .mode = 0, .discrete_mean = {}};
  }
  std::optional<Real> StandardEntropy() const override { return 2 * std::numbers::ln2_v<Real>; }
};

}  // namespace

const Description kCauchy{.name = "Cauchy",
                          .other_names = {"Lorentz"},
                          .parameters = {{"location", kAnyNumber, 0.0}, {"scale", kPositive, 1.0}},
                          .support = "all numbers",
                          .formula = "F(x) = 1 / 2 + arctan((x - location) / scale) / pi",
                          .source = "Johnson, Kotz and Balakrishnan 1994, chapter 16",
                          .make = Make<Cauchy, 2>};

const Description kHalfCauchy{.name = "half-Cauchy",
                              .other_names = {},
                              .parameters = {{"scale", kPositive, 1.0}},
                              .support = "numbers from 0",
                              .formula = "F(x) = 2 / pi arctan(x / scale)",
                              .source = "Johnson, Kotz and Balakrishnan 1994, chapter 16",
                              .make = Make<HalfCauchy, 1>};

const Description kHyperbolicSecant{
    .name = "hyperbolic secant",
    .other_names = {"sech"},
    .parameters = {{"location", kAnyNumber, 0.0}, {"scale", kPositive, 1.0}},
    .support = "all numbers",
    .formula = "F(x) = 2 / pi arctan(exp(pi / 2 (x - location) / scale))",
    .source = "Johnson, Kotz and Balakrishnan 1995, chapter 23",
    .make = Make<HyperbolicSecant, 2>};

}  // namespace DistLib
