// Lognormal, by the mean and standard deviation of the logarithm, and as Johnson's SL.

#include "distributions/transformed.h"

namespace DistLib {
namespace {

class Lognormal : public Transformed<StandardNormal, ExpMap> {
 public:
  Lognormal(double mean, double deviation, double location)
      : Lognormal(mean, Real{deviation}, {location, 1}) {}
  Lognormal(double mean, double deviation) : Lognormal(mean, deviation, 0) {}

 protected:
  Lognormal(Real mean, Real deviation, Place place)
      : Transformed({}, {.factor = deviation, .shift = mean}, place) {}

 private:
  DistLib::Moments StandardMoments() const override {
    const Real deviation = map().factor, mean = map().shift;
    const Real square = deviation * deviation, w = std::exp(square), excess = std::expm1(square);
    return {.mean = std::exp(mean + square / 2),
            .variance = excess * std::exp(2 * mean + square),
            .skewness = (w + 2) * std::sqrt(excess),
            .kurtosis = w * w * (3 + w * (2 + w)) - 3,
            .mode = std::exp(mean - square),
            .discrete_mean = {}};
  }
  std::optional<Real> StandardEntropy() const override {
    const Real deviation = map().factor, mean = map().shift;
    return mean + (1 + std::log(2 * kPi)) / 2 + std::log(deviation);
  }
};

class JohnsonSL : public Lognormal {
 public:
  JohnsonSL(double gamma, double delta, double location, double scale)
      : Lognormal(-gamma / Real{delta}, 1 / Real{delta}, {location, scale}) {}
};

}  // namespace

const Description kLognormal{
    .name = "lognormal",
    .other_names = {"log-normal", "lognormal 2P"},
    .parameters = {{"log mean", kAnyNumber, 0.0}, {"log deviation", kPositive, 1.0}},
    .support = "numbers from 0",
    .formula = "log x is normal with log mean and log deviation",
    .source = "Johnson, Kotz and Balakrishnan 1994, chapter 14",
    .make = Make<Lognormal, 2>};

const Description kLognormal3{
    .name = "three-parameter lognormal",
    .other_names = {"lognormal 3P"},
    .parameters = {{"log mean", kAnyNumber, 0.0},
                   {"log deviation", kPositive, 1.0},
                   {"location", kAnyNumber, 0.0}},
    .support = "numbers from location",
    .formula = "log(x - location) is normal with log mean and log deviation",
    .source = "Johnson, Kotz and Balakrishnan 1994, chapter 14",
    .make = Make<Lognormal, 3>};

const Description kJohnsonSL{
    .name = "Johnson SL",
    .other_names = {},
    .parameters = {{"gamma", kAnyNumber, 0.0},
                   {"delta", kPositive, 1.0},
                   {"location", kAnyNumber, 0.0},
                   {"scale", kPositive, 1.0}},
    .support = "numbers from location",
    .formula = "gamma + delta log((x - location) / scale) is standard normal",
    .source = "Johnson, Kotz and Balakrishnan 1994, section 12.4.3",
    .make = Make<JohnsonSL, 4>};

}  // namespace DistLib
