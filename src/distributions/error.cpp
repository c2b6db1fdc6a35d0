#include <boost/math/special_functions/digamma.hpp>

#include "distributions/gamma_core.h"

namespace DistLib {
namespace {

/// |x|^shape has a gamma distribution.
struct ErrorCore {
  static constexpr Real kLow = -kRealInfinity, kHigh = kRealInfinity;
  Real shape;

  GammaCore Power() const { return {1 / shape}; }
  Real LogDensity(Real x) const {
    return -std::pow(std::fabs(x), shape) - std::lgamma(1 + 1 / shape) - std::numbers::ln2_v<Real>;
  }
  Real Lower(Real x) const { return Upper(-x); }
  Real Upper(Real x) const {
    const Real power = std::pow(std::fabs(x), shape);
    if (power < kNear0) {
      const Real lower = Power().LowerNear0(shape * std::log(std::fabs(x)));
      return x < 0 ? 0.5L + lower / 2 : 0.5L - lower / 2;
    }
    return x < 0 ? 0.5L + Power().Lower(power) / 2 : Power().Upper(power) / 2;
  }
  Real Quantile(Real p) const { return 0 - UpperQuantile(p); }
  Real UpperQuantile(Real q) const {
    if (q > 0.5L) return 0 - UpperQuantile(1 - q);
    const Real power = q < 0.25L ? Power().UpperQuantile(2 * q) : Power().Quantile(1 - 2 * q);
    if (power < kNear0) return std::exp(Power().LogQuantileNear0(std::log1p(-2 * q)) / shape);
    return std::pow(power, 1 / shape);
  }
};

class Error : public Transformed<ErrorCore, Identity> {
 public:
  Error(double location, double scale, double shape)
      : Transformed({shape}, {}, {location, scale}) {}

 private:
  DistLib::Moments StandardMoments() const override {
    const Real inverse = 1 / core().shape;
    const GammaCore power = core().Power();
    const Real variance = power.RawMoment(2 * inverse);
    return {.mean = 0,
            .variance = variance,
            .skewness = 0,
            .kurtosis = power.RawMoment(4 * inverse) / (variance * variance),
            .mode = 0,
            .discrete_mean = {}};
  }
  std::optional<Real> StandardEntropy() const override {
    return 1 / core().shape - core().LogDensity(0);
  }
};

}  // namespace

const Description kError{
    .name = "error",
    .other_names = {"exponential power", "generalised normal", "generalised error"},
    .parameters = {{"location", kAnyNumber, 0.0},
                   {"scale", kPositive, 1.0},
                   {"shape", {.low = 1e-10, .with_low = true}, 2.0}},
    .support = "all numbers",
    .formula = "f(x) = exp(-(|x - location| / scale)^shape) / (2 scale gamma(1 + 1 / shape))",
    .source = "Johnson, Kotz and Balakrishnan 1995, chapter 24",
    .make = Make<Error, 3>};

}  // namespace DistLib
