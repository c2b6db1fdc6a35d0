#include <boost/math/quadrature/exp_sinh.hpp>

#include "distributions/transformed.h"

namespace DistLib {
namespace {

/// z = log(1 + x / shape)
struct GompertzMap {
  Real shape;

  static bool Rises() { return true; }
  Real Forward(Real x) const { return std::log1p(x / shape); }
  Real Back(Real z) const { return shape * std::expm1(z); }
  Real LogSlope(Real z, Real /*x*/) const { return std::log(shape) + z; }
};

class Gompertz : public Transformed<UnitExponential, GompertzMap> {
 public:
  Gompertz(double shape, double rate) : Transformed({}, {shape}, {0, 1 / Real{rate}}) {}

 private:
  // The mean is an exponential integral; the others have no closed form.
  DistLib::Moments StandardMoments() const override {
    const Real mean = Expectation(0, 1);
    DistLib::Moments moments;
    moments.mean = mean;
    const Real variance = Expectation(mean, 2);
    moments.variance = variance;
    moments.skewness = Expectation(mean, 3) / std::pow(variance, 1.5L);
    moments.kurtosis = Expectation(mean, 4) / (variance * variance);
    moments.mode = map().shape < 1 ? -std::log(map().shape) : 0;
    return moments;
  }
  std::optional<Real> StandardEntropy() const override { return {}; }

  /// E[(z - centre)^power]
  Real Expectation(Real centre, int power) const {
    const auto term = [&](Real x) {
      return std::pow(map().Forward(x) - centre, power) * std::exp(-x);
    };
    return boost::math::quadrature::exp_sinh<Real>().integrate(term, 1e-16L);
  }
};

}  // namespace

const Description kGompertz{.name = "Gompertz",
                            .other_names = {},
                            .parameters = {{"shape", kPositive, {}}, {"rate", kPositive, 1.0}},
                            .support = "numbers from 0",
                            .formula = "F(x) = 1 - exp(-shape (exp(rate x) - 1))",
                            .source = "Johnson, Kotz and Balakrishnan 1995, section 22.8",
                            .make = Make<Gompertz, 2>};

}  // namespace DistLib
