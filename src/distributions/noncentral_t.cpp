#include <boost/math/special_functions/erf.hpp>
#include <boost/math/special_functions/gamma.hpp>

#include "distributions/search.h"
#include "distributions/stirling.h"
#include "distributions/trapezoidal.h"

namespace DistLib {
namespace {

/// (Z + noncentrality) / S, Z standard normal and S an estimate of the deviation 1. The tails and
/// the density are those of Z, averaged over log S. The integrands are positive and analytic, and
/// fall fast on both sides, towards 0 by a change of variable as in studentized_range.cpp.
class NoncentralT : public Searched<SinhScale> {
 public:
  NoncentralT(double df, double noncentrality)
      : Searched(SinhScale{noncentrality, std::sqrt(1 + Centre(noncentrality, df))}),
        df_(df),
        noncentrality_(noncentrality),
        scale_(std::sqrt(df / kPi) * std::exp(-StirlingRest(Real{df} / 2))) {}

  DistLib::Moments Moments() const override {
    const Real d = noncentrality_, square = d * d;
    const Real numerator[4] = {d, 1 + square, d * (3 + square), 3 + square * (6 + square)};
    const auto raw = [&](int r) {
      return numerator[r - 1] * std::pow(df_ / 2, r / 2.0L) /
             boost::math::tgamma_delta_ratio(df_ / 2, -r / 2.0L);
    };
    return FromRawMoments(raw, df_, d == 0 ? 0 : SearchedMode());
  }

 private:
  static Real Centre(Real noncentrality, Real df) {
    return noncentrality * noncentrality / (2 * df);
  }

  /// The average of a function of s and x s - noncentrality, whose integrand has its peak near this
  /// s.
  template <class Part>
  Real Average(Real x, Real noncentrality, Real peak, Part part) const {
    constexpr Real kBend = 0.2L;  // of the variable: log s goes down double-exponentially
    constexpr Fineness kFinest{1, 1e-21};
    // The integrand is as narrow as the densities of S and Z are where it is highest, and as that
    // of Z is at the knee of its tail if this is before the density of S vanishes.
    constexpr Real kVanishes = 50;  // of its logarithm
    const Real last = std::max(peak, std::sqrt(1 + 2 * kVanishes / df_));
    const Real knee = x == 0 ? 0 : std::clamp<Real>(noncentrality / x, 0, last);
    const Real score = x * std::max(x * peak > noncentrality ? peak : 0, knee);
    const Real widest = std::max<Real>(peak, 1);
    const Real curvature = df_ * (1 + widest * widest) + score * score;
    const Real step = 1 / std::sqrt(80 + 2.4L * curvature);
    const Real start = std::log(peak);
    return TrapezoidalIntegral(step / (1 + kBend), kFinest, [&](Real v) -> Real {
      const Real bend = kBend * std::expm1(-v);
      const Real t = start + v - bend;
      const Real weight = scale_ * std::exp(df_ * LogChiPower(t)) * (1 + kBend + bend);
      if (!(weight > 0)) return 0;
      const Real s = std::exp(t);
      return weight * part(s, x * s - noncentrality);
    });
  }
  /// log(s) - (s^2 - 1) / 2 for s = exp(t).
  static Real LogChiPower(Real t) {
    const Real excess = std::expm1(2 * t);
    return LogBeyondLinear(std::exp(2 * t), excess) / 2;
  }
  /// The s at which s^power exp(-(df s^2 + (x s - noncentrality)^2) / 2) is highest.
  Real Peak(Real x, Real noncentrality, Real power) const {
    const Real sum = df_ + x * x, half = x * noncentrality / 2;
    const Real root = std::sqrt(half * half + power * sum);
    return half > 0 ? (half + root) / sum : power / (root - half);
  }

  /// The upper tail from the noncentrality on. Below it, the integrand has a knee far from its
  /// peak.
  Real Beyond(Real x, Real noncentrality) const {
    const Real peak = Peak(x, noncentrality, df_);
    return Average(x, noncentrality, peak, [](Real /*s*/, Real z) {
      return boost::math::erfc(z / std::numbers::sqrt2_v<Real>) / 2;
    });
  }
  Real DensityAt(Real x) const override {
    const Real sign = x < 0 ? -1 : 1;
    return Average(std::fabs(x), sign * noncentrality_, Peak(x, noncentrality_, df_ + 1),
                   [](Real s, Real z) { return s * std::exp(StandardNormal::LogDensity(z)); });
  }
  Real UpperTailAt(Real x) const override {
    return x < noncentrality_ ? 1 - CumulativeAt(x) : Beyond(x, noncentrality_);
  }
  Real CumulativeAt(Real x) const override {
    return x > noncentrality_ ? 1 - UpperTailAt(x) : Beyond(-x, -noncentrality_);
  }

  Real df_;
  Real noncentrality_;
  Real scale_;
};

}  // namespace

const Description kNoncentralT{
    .name = "noncentral t",
    .other_names = {"noncentral Student"},
    // With fewer degrees of freedom or more noncentrality, the steps of the integrals were too
    // many.
    .parameters = {{"df", {.low = 0.1, .high = 1e10, .with_low = true, .with_high = true}, {}},
                   {"noncentrality",
                    {.low = -50, .high = 50, .with_low = true, .with_high = true},
                    0.0}},
    .support = "all numbers",
    .formula =
        "x is (z + noncentrality) / sqrt(v / df), z standard normal, v with the chi-square "
        "distribution with df",
    .source = "Johnson, Kotz and Balakrishnan, Continuous Univariate Distributions 2, chapter 31",
    .make = Make<NoncentralT, 2>};

}  // namespace DistLib
