#include "distributions/mills.h"
#include "distributions/search.h"
#include "distributions/tanh_sinh.h"

namespace DistLib {
namespace {

Real NormalBelow(Real z) { return StandardNormal::Lower(z); }

/// The probability of the standard distribution below -h, h >= 0, for a shape from 0 on. It is that
/// of a sector of the plane beyond a line. Owen's T function is what the half-plane has beyond
/// this; as a difference it would lose the digits (Owen, 1956, "Tables for computing bivariate
/// normal probabilities").
Real LightTail(Real h, Real shape) {
  const Real angle = shape > 0 ? std::atan(1 / shape) : kPi / 2;
  if (h * (1 + shape) < 1) {
    // By the density between, as the sector is sharp near its end.
    return angle / kPi - TanhSinhIntegral(h, [&](Real t, Real /*other*/) {
             return 2 * std::exp(StandardNormal::LogDensity(t)) * NormalBelow(-shape * t);
           });
  }
  // The average of exp(-h^2 / 2 (1 + c^2)) over the angles whose cotangent is c >= shape. The
  // exponent is divided into its value at the end of the interval and the rest.
  const Real square = h * h / 2;
  const auto excess = [&](Real from_end) {  // c^2 - shape^2
    const Real tangent = std::tan(from_end);
    const Real rise = tangent * (1 + shape * shape) / (1 - tangent * shape);  // c - shape
    return rise * (2 * shape + rise);
  };
  constexpr Real kVanishes = 50;  // of the exponent
  const Real far = std::sqrt(shape * shape + kVanishes / square);
  const Real width = std::atan(kVanishes / square / (far + shape) / (1 + far * shape));
  const Real integral = TanhSinhIntegral(
      std::min(width, angle),
      [&](Real from_end, Real /*other*/) { return std::exp(-square * excess(from_end)); });
  return std::exp(-square * (1 + shape * shape)) * integral / kPi;
}

class SkewNormal : public Searched<SinhScale> {
 public:
  SkewNormal(double location, double scale, double shape)
      : Searched(SinhScale{location, scale}), location_(location), scale_(scale), shape_(shape) {}

  DistLib::Moments Moments() const override {
    const Real mean = shape_ / std::hypot(1.0L, shape_) * std::sqrt(2 / kPi);
    const Real variance = 1 - mean * mean, ratio = mean * mean / variance;
    const DistLib::Moments standard{
        .mean = mean,
        .variance = variance,
        .skewness = (4 - kPi) / 2 * std::copysign(std::pow(ratio, 1.5L), mean),
        .kurtosis = 3 + 2 * (kPi - 3) * ratio * ratio,
        .mode = {},
        .discrete_mean = {}};
    DistLib::Moments moments = Moved(standard, location_, scale_);
    moments.mode = SearchedMode();
    return moments;
  }

 private:
  Real Standardized(Real x) const { return (x - location_) / scale_; }
  Real LogDensityAt(Real x) const override {
    const Real z = Standardized(x);
    return StandardNormal::LogDensity(z) + LogNormalBelow(shape_ * z) + std::numbers::ln2_v<Real> -
           std::log(scale_);
  }
  Real DensityAt(Real x) const override { return std::exp(LogDensityAt(x)); }
  Real CumulativeAt(Real x) const override { return Below(Standardized(x), shape_); }
  Real UpperTailAt(Real x) const override { return Below(-Standardized(x), -shape_); }

  static Real LogNormalBelow(Real z);
  /// The probability below z.
  static Real Below(Real z, Real shape) {
    if (shape < 0) {
      const Real beyond = LightTail(std::fabs(z), -shape);
      return z < 0 ? 2 * StandardNormal::Lower(z) - beyond : 1 - beyond;
    }
    const Real beyond = LightTail(std::fabs(z), shape);
    return z < 0 ? beyond : HalfNormalCore::Lower(z) + beyond;
  }

  Real location_;
  Real scale_;
  Real shape_;
};

Real SkewNormal::LogNormalBelow(Real z) {
  constexpr Real kFar = -20;
  return z < kFar ? StandardNormal::LogDensity(z) + std::log(MillsRatio(-z))
                  : std::log(NormalBelow(z));
}

}  // namespace

const Description kSkewNormal{
    .name = "skew normal",
    .other_names = {"Azzalini"},
    .parameters = {{"location", kAnyNumber, 0.0},
                   {"scale", kPositive, 1.0},
                   {"shape", kAnyNumber, 0.0}},
    .support = "all numbers",
    .formula =
        "f(x) = 2 phi(z) Phi(shape z) / scale, z = (x - location) / scale, phi and Phi the density "
        "and cumulative probability of the standard normal distribution",
    .source = "Azzalini 1985, Scandinavian Journal of Statistics 12, 171-178",
    .make = Make<SkewNormal, 3>};

}  // namespace DistLib
