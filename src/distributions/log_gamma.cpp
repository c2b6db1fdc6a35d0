// The logarithm of a gamma variable, and log-Pearson III, whose logarithm is a gamma variable.

#include <boost/math/special_functions/polygamma.hpp>

#include "distributions/gamma_core.h"

namespace DistLib {
namespace {

class LogGamma : public Transformed<GammaCore, LogMap> {
 public:
  LogGamma(double shape, double scale, double location)
      : Transformed({shape}, {1}, {location, scale}) {}

 private:
  DistLib::Moments StandardMoments() const override {
    Real cumulants[4];
    for (int i = 0; i < 4; ++i) cumulants[i] = boost::math::polygamma(i, core().shape);
    return FromCumulants(cumulants, std::log(core().shape));
  }
  std::optional<Real> StandardEntropy() const override {
    return core().Entropy() - core().LogMean();
  }
};

class LogPearsonIII : public Transformed<GammaCore, ExpMap> {
 public:
  LogPearsonIII(double shape, double scale, double location)
      : Transformed({shape}, {.factor = NotZero(scale), .shift = location}, {}) {}

 private:
  static Real NotZero(double scale) {
    if (scale == 0) throw ParameterError("log scale", "must not be 0", scale);
    return scale;
  }

  DistLib::Moments StandardMoments() const override {
    const Real factor = map().factor, shift = map().shift;
    const auto raw = [&](int r) {
      return std::exp(r * shift - core().shape * std::log1p(-r * factor));
    };
    return FromRawMoments(raw, factor > 0 ? 1 / factor : kRealInfinity, Mode());
  }
  std::optional<Real> Mode() const {
    const Real factor = map().factor, shape = core().shape;
    if (factor > -1) return map().Forward(shape > 1 ? (shape - 1) / (1 + factor) : 0);
    if (shape > 1) return 0;
    return {};  // both ends are without bound
  }
  std::optional<Real> StandardEntropy() const override {
    const Real factor = map().factor, shift = map().shift;
    return core().Entropy() + std::log(std::fabs(factor)) + shift + factor * core().shape;
  }
};

}  // namespace

const Description kLogGamma{
    .name = "log-gamma",
    .other_names = {},
    .parameters = {{"shape", kDegrees, {}},
                   {"scale", kPositive, 1.0},
                   {"location", kAnyNumber, 0.0}},
    .support = "all numbers",
    .formula = "exp((x - location) / scale) has the gamma distribution with this shape",
    .source = "Johnson, Kotz and Balakrishnan 1994, section 17.8",
    .make = Make<LogGamma, 3>};

const Description kLogPearsonIII{
    .name = "log-Pearson III",
    .other_names = {"log-Pearson type III"},
    .parameters = {{"shape", kDegrees, {}},
                   {"log scale", kAnyNumber, 1.0},
                   {"log location", kAnyNumber, 0.0}},
    .support =
        "numbers from exp(log location); from 0 to exp(log location) if log scale is negative",
    .formula = "(log x - log location) / log scale has the gamma distribution with this shape",
    .source = "Bobee 1975, Water Resources Research 11, 681-689",
    .make = Make<LogPearsonIII, 3>};

}  // namespace DistLib
