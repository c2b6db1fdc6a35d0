#include "distributions/transformed.h"

namespace DistLib {
namespace {

/// z = sinh((x - gamma) / delta)
struct SinhMap {
  Real gamma;
  Real delta;

  static bool Rises() { return true; }
  Real Forward(Real x) const { return std::sinh((x - gamma) / delta); }
  Real Back(Real z) const { return gamma + delta * std::asinh(z); }
  Real LogSlope(Real z, Real /*x*/) const {
    return std::log(delta) - std::log(std::hypot(1.0L, z));
  }
};

class JohnsonSU : public Transformed<StandardNormal, SinhMap> {
 public:
  JohnsonSU(double gamma, double delta, double location, double scale)
      : Transformed({}, {gamma, delta}, {location, scale}) {}

 private:
  // The raw moments are those of (V - 1 / V) / 2, where V is lognormal.
  DistLib::Moments StandardMoments() const override {
    const auto& [gamma, delta] = map();
    const Real w = 1 / (2 * delta * delta), shift = gamma / delta;
    const auto cosh = [&](int r) { return std::exp(r * r * w) * std::cosh(r * shift); };
    const auto sinh = [&](int r) { return std::exp(r * r * w) * std::sinh(-r * shift); };
    const Real raw[4] = {sinh(1), (cosh(2) - 1) / 2, (sinh(3) - 3 * sinh(1)) / 4,
                         (cosh(4) - 4 * cosh(2) + 3) / 8};
    return FromRawMoments([&](int r) { return raw[r - 1]; }, 5, SearchedStandardMode());
  }
  std::optional<Real> StandardEntropy() const override { return {}; }
};

}  // namespace

const Description kJohnsonSU{
    .name = "Johnson SU",
    .other_names = {},
    .parameters = {{"gamma", kAnyNumber, 0.0},
                   {"delta", kPositive, 1.0},
                   {"location", kAnyNumber, 0.0},
                   {"scale", kPositive, 1.0}},
    .support = "all numbers",
    .formula = "gamma + delta arsinh((x - location) / scale) is standard normal",
    .source = "Johnson, Kotz and Balakrishnan 1994, section 12.4.3",
    .make = Make<JohnsonSU, 4>};

}  // namespace DistLib
