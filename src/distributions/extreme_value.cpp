// The limits of maxima and minima.

#include "distributions/transformed.h"

namespace DistLib {
namespace {

constexpr Real kApery = 1.2020569031595942853997381615114499908L;

/// Gumbel, of maxima or of minima; the minima are the maxima's reflection.
class Gumbel : public Transformed<UnitExponential, LogMap> {
 protected:
  Gumbel(Real sign, Place place) : Transformed({}, {sign}, place) {}

 private:
  DistLib::Moments StandardMoments() const override {
    const Real variance = kPi * kPi / 6;
    return {.mean = -map().factor * kEuler,
            .variance = variance,
            .skewness = -map().factor * 2 * kApery / std::pow(variance, 1.5L),
            .kurtosis = 5.4L,
            .mode = 0,
            .discrete_mean = {}};
  }
  std::optional<Real> StandardEntropy() const override { return 1 + kEuler; }
};

class GumbelOfMaxima : public Gumbel {
 public:
  GumbelOfMaxima(double location, double scale) : Gumbel(-1, {location, scale}) {}
};

class GumbelOfMinima : public Gumbel {
 public:
  GumbelOfMinima(double location, double scale) : Gumbel(1, {location, scale}) {}
};

/// The map from a Gumbel variable; a shape of 0 leaves it as it is.
class GeneralizedExtremeValue : public Transformed<UnitExponential, Composed<LogMap, Expm1Map>> {
 public:
  GeneralizedExtremeValue(double location, double scale, double shape)
      : Transformed({}, {{-1}, {shape, shape}}, {location, scale}), shape_(shape) {}

 private:
  // The power W = 1 + shape z has the raw moments gamma(1 - r shape).
  DistLib::Moments StandardMoments() const override {
    if (shape_ == 0) return GumbelOfMaxima(0, 1).Moments();
    const Real limit = shape_ > 0 ? 1 / shape_ : kRealInfinity;
    const Real mode = shape_ > -1 ? std::pow(1 + shape_, -shape_) : 0;
    DistLib::Moments moments =
        FromRawMoments([this](int r) { return std::tgamma(1 - r * shape_); }, limit, mode);
    if (moments.skewness && shape_ < 0) *moments.skewness *= -1;
    return Moved(moments, -1 / shape_, 1 / shape_);
  }
  std::optional<Real> StandardEntropy() const override { return 1 + kEuler * (1 + shape_); }

  Real shape_;
};

}  // namespace

const Description kGumbelOfMaxima{
    .name = "Gumbel",
    .other_names = {"extreme value of maxima", "Gumbel maximum", "extreme value type I"},
    .parameters = {{"location", kAnyNumber, 0.0}, {"scale", kPositive, 1.0}},
    .support = "all numbers",
    .formula = "F(x) = exp(-exp(-(x - location) / scale))",
    .source = "Johnson, Kotz and Balakrishnan 1995, chapter 22",
    .make = Make<GumbelOfMaxima, 2>};

const Description kGumbelOfMinima{
    .name = "extreme value of minima",
    .other_names = {"Gumbel minimum"},
    .parameters = {{"location", kAnyNumber, 0.0}, {"scale", kPositive, 1.0}},
    .support = "all numbers",
    .formula = "F(x) = 1 - exp(-exp((x - location) / scale))",
    .source = "Johnson, Kotz and Balakrishnan 1995, chapter 22",
    .make = Make<GumbelOfMinima, 2>};

const Description kGeneralizedExtremeValue{
    .name = "generalised extreme value",
    .other_names = {"generalized extreme value", "GEV"},
    .parameters = {{"location", kAnyNumber, 0.0},
                   {"scale", kPositive, 1.0},
                   {"shape", kAnyNumber, 0.0}},
    .support = "numbers where 1 + shape (x - location) / scale is not negative",
    .formula = "F(x) = exp(-(1 + shape (x - location) / scale)^(-1 / shape))",
    .source = "Johnson, Kotz and Balakrishnan 1995, chapter 22",
    .make = Make<GeneralizedExtremeValue, 3>};

}  // namespace DistLib
