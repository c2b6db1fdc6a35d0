// Half-normal, and Levy, the reciprocal of its square.

#include "distributions/transformed.h"

namespace DistLib {
namespace {

class HalfNormal : public Transformed<HalfNormalCore, Identity> {
 public:
  explicit HalfNormal(double scale) : Transformed({}, {}, {0, scale}) {}

 private:
  DistLib::Moments StandardMoments() const override {
    return {.mean = std::sqrt(2 / kPi),
            .variance = 1 - 2 / kPi,
            .skewness = std::numbers::sqrt2_v<Real> * (4 - kPi) / std::pow(kPi - 2, 1.5L),
            .kurtosis = 3 + 8 * (kPi - 3) / ((kPi - 2) * (kPi - 2)),
            .mode = 0,
            .discrete_mean = {}};
  }
  std::optional<Real> StandardEntropy() const override { return (1 + std::log(kPi / 2)) / 2; }
};

class Levy : public Transformed<HalfNormalCore, PowerMap> {
 public:
  Levy(double location, double scale) : Transformed({}, {-2}, {location, scale}) {}

 private:
  DistLib::Moments StandardMoments() const override {
    DistLib::Moments moments;
    moments.mode = 1 / 3.0L;
    return moments;
  }
  std::optional<Real> StandardEntropy() const override {
    return (1 + 3 * kEuler + std::log(16 * kPi)) / 2;
  }
};

}  // namespace

const Description kHalfNormal{.name = "half-normal",
                              .other_names = {},
                              .parameters = {{"scale", kPositive, 1.0}},
                              .support = "numbers from 0",
                              .formula = "F(x) = erf(x / (scale sqrt(2)))",
                              .source = "Johnson, Kotz and Balakrishnan 1994, section 13.10.1",
                              .make = Make<HalfNormal, 1>};

const Description kLevy{.name = "Levy",
                        .other_names = {},
                        .parameters = {{"location", kAnyNumber, 0.0}, {"scale", kPositive, 1.0}},
                        .support = "numbers from location",
                        .formula = "F(x) = erfc(sqrt(scale / (2 (x - location))))",
                        .source = "Johnson, Kotz and Balakrishnan 1994, section 12.4.5",
                        .make = Make<Levy, 2>};

}  // namespace DistLib
