// The length of a normal vector whose mean is not 0: noncentral chi-square and Rice.

#include <boost/math/special_functions/gamma.hpp>
#include <stdexcept>

#include "distributions/poisson_mixture.h"
#include "distributions/search.h"

namespace DistLib {
namespace {

struct GammaComponent {
  Real shape;
  Real y;

  Real Lower(Real j) const { return boost::math::gamma_p(shape + j, y); }
  Real Upper(Real j) const { return boost::math::gamma_q(shape + j, y); }
  Real LogStep(Real j) const { return PoissonPower(shape + j, y).Log(); }
  Real StepRatio(Real j) const { return y / (shape + j + 1); }
  Real MostRatio(Real j) const { return StepRatio(j); }
  /// Of y times the density.
  Real LogDensity(Real j) const { return LogStep(j) + std::log(shape + j); }
  Real DensityRatio(Real j) const { return y / (shape + j); }
};

/// (x / scale)^power is a gamma variable whose shape is increased by a Poisson variable.
class NoncentralGammaPower : public Searched<LogScale> {
 protected:
  NoncentralGammaPower(Real shape, Real increase, int power, Real scale)
      : Searched(LogScale{scale * (power == 1 ? shape + increase : std::sqrt(shape + increase))}),
        shape_(shape),
        increase_(increase),
        power_(power),
        scale_(scale) {}

  Real increase() const { return increase_; }
  /// Below one, the density at 0 is infinite.
  Real PowerAtZero() const { return shape_ * power_; }

 private:
  Real GammaValue(Real x) const {
    const Real ratio = x / scale_;
    return power_ == 1 ? ratio : ratio * ratio;
  }
  PoissonMixture<GammaComponent> Mixture(Real x) const {
    return {{shape_, GammaValue(x)}, increase_};
  }

  Real LogDensityAt(Real x) const override {
    if (x > 0) return Mixture(x).LogDensity() + std::log(power_ / x);
    if (PowerAtZero() < 1) throw std::overflow_error("no bound");
    return PowerAtZero() == 1 ? std::log(power_ / scale_) - increase_ - std::lgamma(shape_)
                              : -kRealInfinity;
  }
  Real DensityAt(Real x) const override { return std::exp(LogDensityAt(x)); }
  Real CumulativeAt(Real x) const override { return x > 0 ? Mixture(x).Lower() : 0; }
  Real UpperTailAt(Real x) const override { return x > 0 ? Mixture(x).Upper() : 1; }

  Real shape_;
  Real increase_;
  Real power_;
  Real scale_;
};

class NoncentralChiSquare : public NoncentralGammaPower {
 public:
  NoncentralChiSquare(double df, double noncentrality)
      : NoncentralGammaPower(Real{df} / 2, Real{noncentrality} / 2, 1, 2),
        df_(df),
        noncentrality_(noncentrality) {}

  DistLib::Moments Moments() const override {
    const Real n = df_, l = noncentrality_;
    const bool falls = n < 2 || (n == 2 && l <= 2);
    return FromCumulants({n + l, 2 * (n + 2 * l), 8 * (n + 3 * l), 48 * (n + 4 * l)},
                         falls ? 0 : SearchedMode());
  }

 private:
  Real df_;
  Real noncentrality_;
};

class Rice : public NoncentralGammaPower {
 public:
  Rice(double distance, double scale)
      : NoncentralGammaPower(1, Increase(distance, scale), 2, scale * std::numbers::sqrt2_v<Real>) {
  }

  DistLib::Moments Moments() const override { return SearchedMoments(SearchedMode()); }

 private:
  static Real Increase(double distance, double scale) {
    constexpr Real kMostRatio = 300;  // as for the noncentrality
    const Real ratio = distance / Real{scale};
    if (ratio > kMostRatio)
      throw ParameterError("distance", "must be at most 300 times scale", distance);
    return ratio * ratio / 2;
  }
};

}  // namespace

const Description kNoncentralChiSquare{
    .name = "noncentral chi-square",
    .other_names = {"noncentral chi-squared"},
    .parameters = {{"df", kDegrees, {}}, {"noncentrality", kNoncentrality, 0.0}},
    .support = "numbers from 0",
    .formula =
        "x has the chi-square distribution with df + 2 j, j the Poisson distribution with mean "
        "noncentrality / 2",
    .source = "Johnson, Kotz and Balakrishnan, Continuous Univariate Distributions 2, chapter 29",
    .make = Make<NoncentralChiSquare, 2>};

const Description kRice{
    .name = "Rice",
    .other_names = {"Rician", "Nakagami-n"},
    .parameters = {{"distance", kFromZero, {}}, {"scale", kPositive, 1.0}},
    .support = "numbers from 0",
    .formula =
        "(x / scale)^2 has the noncentral chi-square distribution with df 2 and noncentrality "
        "(distance / scale)^2",
    .source = "Rice 1945, Bell System Technical Journal 24, section 3.10",
    .make = Make<Rice, 2>};

}  // namespace DistLib
