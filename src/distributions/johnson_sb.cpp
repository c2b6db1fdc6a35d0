#include "distributions/bounded.h"
#include "distributions/search.h"

namespace DistLib {
namespace {

class JohnsonSB : public BoundedDist {
 public:
  JohnsonSB(double gamma, double delta, double location, double scale)
      : BoundedDist(location, UpperEnd(location, scale)), gamma_(gamma), delta_(delta) {}

  DistLib::Moments Moments() const override {
    const auto at = [this](Real score) -> Weighted {
      return {Value(Place(score)), std::exp(StandardNormal::LogDensity(score))};
    };
    return MomentsByQuadrature(0, std::min<Real>(1, delta_), Mode(), at);
  }

 private:
  static double UpperEnd(double location, double scale) {
    const double end = location + scale;
    RequireAbove("location + scale", end, "location", location);
    return end;
  }

  Inside Place(Real score) const {
    const Real log_odds = (score - gamma_) / delta_;
    const Real nearer = width() / (1 + std::exp(std::fabs(log_odds)));
    return log_odds < 0 ? Inside{nearer, width() - nearer} : Inside{width() - nearer, nearer};
  }
  Real Score(Real x) const {
    const Inside inside = At(x);
    return gamma_ + delta_ * std::log(inside.from_low / inside.from_high);
  }

  Real LogDensityAt(Real x) const override {
    const Inside inside = At(x);
    if (inside.from_low <= 0 || inside.from_high <= 0) return -kRealInfinity;
    return StandardNormal::LogDensity(Score(x)) + std::log(delta_) + std::log(width()) -
           std::log(inside.from_low) - std::log(inside.from_high);
  }
  Real DensityAt(Real x) const override { return std::exp(LogDensityAt(x)); }
  Real CumulativeAt(Real x) const override { return StandardNormal::Lower(Score(x)); }
  Real UpperTailAt(Real x) const override { return StandardNormal::Upper(Score(x)); }
  Real QuantileOf(Real p) const override { return Value(Place(StandardNormal::Quantile(p))); }
  Real UpperQuantileOf(Real q) const override {
    return Value(Place(StandardNormal::UpperQuantile(q)));
  }
  std::optional<Real> Mode() const;

  Real gamma_;
  Real delta_;
};

/// Where the slope of the logarithm of the density vanishes, at a part t of the width: 2 t - 1 =
/// delta (gamma + delta log(t / (1 - t))). Two peaks are no mode.
std::optional<Real> JohnsonSB::Mode() const {
  const auto slope = [this](Real log_odds) {
    return std::tanh(log_odds / 2) - delta_ * (gamma_ + delta_ * log_odds);
  };
  // Beyond these, the linear part outweighs the other.
  const Real centre = -gamma_ / delta_, reach = 1 / (delta_ * delta_) + 1;
  Real low = centre - reach, high = centre + reach;
  for (int i = 0; i < 100; ++i) {
    const Real middle = (low + high) / 2;
    (slope(middle) > 0 ? low : high) = middle;
  }
  // The slopes of its two parts are equal at most twice, which makes three roots at most.
  const Real curved = 2 * delta_ * delta_;
  if (curved < 1) {
    const Real turn = 2 * std::acosh(1 / std::sqrt(curved));
    if (slope(-turn) < 0 && slope(turn) > 0) return {};
  }
  return Value(Place(gamma_ + delta_ * low));
}

}  // namespace

const Description kJohnsonSB{
    .name = "Johnson SB",
    .other_names = {},
    .parameters = {{"gamma", kAnyNumber, 0.0},
                   {"delta", kPositive, 1.0},
                   {"location", kAnyNumber, 0.0},
                   {"scale", kPositive, 1.0}},
    .support = "numbers from location to location + scale",
    .formula = "gamma + delta log((x - location) / (location + scale - x)) is standard normal",
    .source = "Johnson, Kotz and Balakrishnan 1994, section 12.4.3",
    .make = Make<JohnsonSB, 4>};

}  // namespace DistLib
