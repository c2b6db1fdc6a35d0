#include "distributions/search.h"
#include "distributions/tanh_sinh.h"

namespace DistLib {
namespace {

/// All probabilities are relative to the density at the location. So is the Bessel function that
/// the density contains: it is the integral over the circle.
class VonMises : public Searched<LogitScale> {
 public:
  VonMises(double location, double concentration)
      : Searched(LogitScale{location - kPi, location + kPi}),
        location_(location),
        concentration_(concentration),
        whole_(2 * Integral(0, kPi, [](Real /*fall*/) { return 1; })) {}

  DistLib::Moments Moments() const override { return SearchedMoments(location_); }
  std::optional<Real> Entropy() const override {
    const Real fall = 2 * Integral(0, kPi, [](Real of_log) { return of_log; });
    return std::log(whole_) + fall / whole_;
  }

 private:
  /// By how much the logarithm of the density falls from an angle to one that is further from the
  /// location by `step`; `left` is what is left then up to the opposite point.
  Real Fall(Real angle, Real step, Real left) const {
    const Real middle = angle < 1 ? angle + step / 2 : left + step / 2;
    return 2 * concentration_ * std::sin(middle) * std::sin(step / 2);
  }
  /// The integral from an angle >= 0 to the opposite point, relative to the density at the angle;
  /// `left` is its length. `factor` takes the fall of the logarithm.
  template <class Factor>
  Real Integral(Real angle, Real left, Factor factor) const {
    constexpr Real kVanishes = 50;  // of the logarithm
    const Real cosine = std::cos(angle) - kVanishes / concentration_;
    const Real width = cosine > -1 ? std::min(std::acos(cosine) - angle, left) : left;
    return TanhSinhIntegral(width, [&](Real from_angle, Real to_end) {
      const Real fall = Fall(angle, from_angle, left - width + to_end);
      return factor(fall) * std::exp(-fall);
    });
  }
  /// The probability beyond an angle on one side.
  Real Tail(Real angle) const {
    const Real left = kPi - angle;
    if (left <= 0) return 0;
    const Real integral = Integral(angle, left, [](Real /*fall*/) { return 1; });
    return std::exp(-Fall(0, angle, left)) * integral / whole_;
  }

  Real LogDensityAt(Real x) const override {
    const Real angle = std::fabs(x - location_);
    return -Fall(0, angle, kPi - angle) - std::log(whole_);
  }
  Real DensityAt(Real x) const override { return std::exp(LogDensityAt(x)); }
  Real CumulativeAt(Real x) const override {
    return x > location_ ? 1 - UpperTailAt(x) : Tail(location_ - x);
  }
  Real UpperTailAt(Real x) const override {
    return x < location_ ? 1 - CumulativeAt(x) : Tail(x - location_);
  }

  Real location_;
  Real concentration_;
  Real whole_;
};

}  // namespace

const Description kVonMises{
    .name = "von Mises",
    .other_names = {"circular normal", "Tikhonov"},
    .parameters = {{"location", kAnyNumber, 0.0},
                   {"concentration",
                    {.low = 0, .high = 1e10, .with_low = true, .with_high = true},
                    1.0}},
    .support = "numbers from location - pi to location + pi",
    .formula =
        "f(x) = exp(concentration cos(x - location)) / (2 pi I0(concentration)), I0 the modified "
        "Bessel function",
    .source = "Mardia and Jupp 2000, Directional Statistics, section 3.5.4",
    .make = Make<VonMises, 2>};

}  // namespace DistLib
