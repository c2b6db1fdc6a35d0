// Laplace and log-Laplace.

#include "distributions/transformed.h"

namespace DistLib {
namespace {

using std::numbers::ln2_v;

class Laplace : public Transformed<StandardLaplace, Identity> {
 public:
  Laplace(double location, double scale) : Transformed({}, {}, {location, scale}) {}

 private:
  DistLib::Moments StandardMoments() const override {
    return {.mean = 0, .variance = 2, .skewness = 0, .kurtosis = 6, .mode = 0, .discrete_mean = {}};
  }
  std::optional<Real> StandardEntropy() const override { return 1 + ln2_v<Real>; }
};

class LogLaplace : public Transformed<StandardLaplace, ExpMap> {
 public:
  LogLaplace(double shape, double scale)
      : Transformed({}, {.factor = 1 / Real{shape}}, {0, scale}), shape_(shape) {}

 private:
  DistLib::Moments StandardMoments() const override {
    const auto raw = [this](int r) { return 1 / (1 - r / shape_ * (r / shape_)); };
    std::optional<Real> mode;
    if (shape_ != 1) mode = shape_ > 1 ? 1 : 0;  // the density is flat below the scale at 1
    return FromRawMoments(raw, shape_, mode);
  }
  std::optional<Real> StandardEntropy() const override {
    return 1 + ln2_v<Real> - std::log(shape_);
  }

  Real shape_;
};

}  // namespace

const Description kLaplace{.name = "Laplace",
                           .other_names = {"double exponential"},
                           .parameters = {{"location", kAnyNumber, 0.0}, {"scale", kPositive, 1.0}},
                           .support = "all numbers",
                           .formula = "f(x) = exp(-|x - location| / scale) / (2 scale)",
                           .source = "Johnson, Kotz and Balakrishnan 1995, chapter 24",
                           .make = Make<Laplace, 2>};

const Description kLogLaplace{
    .name = "log-Laplace",
    .other_names = {},
    .parameters = {{"shape", kPositive, {}}, {"scale", kPositive, 1.0}},
    .support = "numbers from 0",
    .formula = "F(x) = (x / scale)^shape / 2 below scale, 1 - (x / scale)^-shape / 2 above",
    .source = "Kotz, Kozubowski and Podgorski 2001, section 2.2",
    .make = Make<LogLaplace, 2>};

}  // namespace DistLib
