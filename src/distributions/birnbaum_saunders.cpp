#include "distributions/transformed.h"

namespace DistLib {
namespace {

/// z is the square of shape x / 2 + sqrt(1 + (shape x / 2)^2).
struct SaundersMap {
  Real shape;

  static bool Rises() { return true; }
  Real Forward(Real x) const { return std::exp(2 * std::asinh(shape * x / 2)); }
  Real Back(Real z) const { return 2 / shape * std::sinh(std::log(z) / 2); }
  Real LogSlope(Real z, Real /*x*/) const {
    const Real log_z = std::log(z);
    return std::log(std::cosh(log_z / 2)) - std::log(shape) - log_z;
  }
};

class BirnbaumSaunders : public Transformed<StandardNormal, SaundersMap> {
 public:
  BirnbaumSaunders(double shape, double scale) : Transformed({}, {shape}, {0, scale}) {}

 private:
  DistLib::Moments StandardMoments() const override {
    const Real square = map().shape * map().shape, five = 5 * square + 4;
    return {.mean = 1 + square / 2,
            .variance = square * five / 4,
            .skewness = 4 * map().shape * (11 * square + 6) / std::pow(five, 1.5L),
            .kurtosis = 3 + 6 * square * (93 * square + 40) / (five * five),
            .mode = SearchedStandardMode(),
            .discrete_mean = {}};
  }
  std::optional<Real> StandardEntropy() const override { return {}; }
};

}  // namespace

const Description kBirnbaumSaunders{
    .name = "Birnbaum-Saunders",
    .other_names = {"fatigue life"},
    .parameters = {{"shape", kPositive, {}}, {"scale", kPositive, 1.0}},
    .support = "numbers from 0",
    .formula = "(sqrt(x / scale) - sqrt(scale / x)) / shape is standard normal",
    .source = "Johnson, Kotz and Balakrishnan 1995, chapter 33",
    .make = Make<BirnbaumSaunders, 2>};

}  // namespace DistLib
