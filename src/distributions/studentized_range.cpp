// The average of the normal range's functions at w = q s over the estimate s of the deviation
// (Hartley, 1942; Copenhaver and Holland, 1988). With few degrees of freedom the integrand falls as
// slowly as a small power of s towards 0; a change of variable makes this side fall
// double-exponentially (Takahasi and Mori, 1974).
#include "distributions/studentized_range.h"

#include <algorithm>
#include <boost/math/special_functions/gamma.hpp>
#include <boost/math/special_functions/log1p.hpp>
#include <cmath>
#include <limits>
#include <numbers>
#include <stdexcept>

#include "distributions/normal_range.h"
#include "distributions/trapezoidal.h"

namespace DistLib {
namespace {

constexpr double kMostMeans = 200;
constexpr double kLeastDf = 0.5;
/// From here on the estimate differs from the deviation by too little to change a digit.
constexpr double kInfiniteDf = 1e17;
constexpr double kLargest = std::numeric_limits<double>::max();

void RequireDomain(bool in_domain) {
  if (!in_domain) throw std::domain_error("outside the domain of the studentized range");
}

int ValidMeans(double means) {
  RequireDomain(means >= 2 && means <= kMostMeans && means == std::floor(means));
  return static_cast<int>(means);
}

bool IsRange(Real q) { return q >= 0 && q <= kLargest; }
bool IsProbability(Real p) { return p > 0 && p < 1; }

/// a^a exp(-a) / gamma(a).
Real GammaScale(Real a) {
  if (a < 1e4L) return a * boost::math::gamma_p_derivative(a, a);
  // Stirling's formula, since the function would lose digits in proportion to a.
  const Real rest = 1 / (12 * a) - 1 / (360 * a * a * a);
  return std::sqrt(a / (2 * std::numbers::pi_v<Real>)) * std::exp(-rest);
}

/// log(s) - (s^2 - 1) / 2 for s = exp(t).
Real LogChiPower(Real t) {
  const Real excess = std::expm1(2 * t);
  return std::fabs(excess) < 0.5L ? boost::math::log1pmx(excess) / 2 : t - excess / 2;
}

/// A stage of the search for a quantile: how exact the tail and its slope are, and the step, of the
/// logarithm, that ends it.
struct Stage {
  Fineness tail;
  Fineness density;
  double last_step;
};
constexpr Fineness kThreeDigits{2.2, 1e-4};
constexpr Fineness kSevenDigits{1.45, 1e-8};
constexpr Stage kStages[] = {{kThreeDigits, kThreeDigits, 1e-2},
                             {kSevenDigits, kThreeDigits, 1e-5},
                             {kFine, kSevenDigits, 1e-8}};

/// Newton's method from x on, with a bracket that is the range of doubles at first. A step towards
/// larger x says that the root is there.
template <class StepAt>
Real NewtonRoot(StepAt step_at, Real x, double last_step) {
  constexpr int kMostSteps = 200;
  Real low = std::log(std::numeric_limits<double>::denorm_min());
  Real high = std::log(kLargest);
  for (int i = 0; i < kMostSteps; ++i) {
    const Real step = step_at(x);
    if (std::fabs(step) < last_step) return x + step;
    (step > 0 ? low : high) = x;
    x += step;
    if (!(x > low && x < high)) x = (low + high) / 2;
  }
  throw std::overflow_error("no quantile in the range of doubles");
}

}  // namespace

StudentizedRange::StudentizedRange(double means, double df) : means_(ValidMeans(means)), df_(df) {
  RequireDomain(df >= kLeastDf);
  if (df_ < kInfiniteDf) scale_ = 2 * GammaScale(df_ / 2);
}

/// The logarithm of the estimate at which the outer integrand is roughly highest. At the peak, the
/// slope of the range's part balances df (s^2 - 1). Towards 0 it is at most means - 1, and far out
/// it is about -w^2 / 2; this bounds the search.
template <class Part>
double StudentizedRange::PeakOf(double q) const {
  constexpr double kSection = 0.382;
  const auto height = [&](double t) {
    return df_ * (t - std::expm1(2 * t) / 2) + Part::RoughLog(q * std::exp(t), means_);
  };
  const double width = 1 / std::sqrt(df_ + 1);
  double low = -std::max(std::log(q / std::sqrt(2 * df_)), 0.0) - 3 / std::sqrt(df_);
  double high = std::log1p((means_ - 1) / df_) / 2 + width;
  while (high - low > width / 10) {
    const double step = kSection * (high - low);
    if (height(low + step) < height(high - step))
      low += step;
    else
      high -= step;
  }
  return (low + high) / 2;
}

/// The average of the range's part over the estimate, integrated over t = log s.
template <class Part>
Real StudentizedRange::Mixture(Real q, const Fineness& fineness) const {
  Part part(means_, fineness);
  if (df_ >= kInfiniteDf) return part.At(static_cast<double>(q));
  // At the peak, the logarithm of the integrand is curved like that of a chi density with `power`
  // degrees of freedom, whose deviation is sqrt(1 / (2 power)); with many means, the distribution
  // of the range makes it narrower. With few degrees of freedom another bound counts: the integrand
  // is tame only within pi / 4 of the real line, which leaves exp(-pi^2 / (2 step)), below 1e-15.
  const double peak = PeakOf<Part>(static_cast<double>(q));
  const double log_means = std::log(means_);
  const double power = df_ * std::max(1.0, std::exp(2 * peak)) + 2 * log_means * log_means;
  const Real step = 1 / std::sqrt(56 + 4.2 * power);
  constexpr Real kBend = 0.2L;  // of the variable: t goes down double-exponentially beyond it
  return TrapezoidalIntegral(step / (1 + kBend), fineness, [&](Real x) -> Real {
    const Real bend = kBend * std::expm1(-x);
    const Real t = peak + x - bend;
    const Real s = std::exp(t);
    const Real weight = scale_ * std::exp(df_ * LogChiPower(t)) * (1 + kBend + bend);
    if (!(weight > 0)) return 0;
    const Real w = std::min<Real>(q * s, kLargest);
    return weight * (Part::kDensity ? s : 1) * part.At(static_cast<double>(w));
  });
}

Real StudentizedRange::Lower(Real q, const Fineness& fineness) const {
  // Where it is not small, the complement is as accurate and its integrand has no knee.
  constexpr double kLogHalf = -0.7;
  return RangeUpper::RoughLog(static_cast<double>(q), means_) < kLogHalf
             ? 1 - Mixture<RangeUpper>(q, fineness)
             : Mixture<RangeLower>(q, fineness);
}

Real StudentizedRange::Density(Real q) const {
  RequireDomain(IsRange(q));
  return Mixture<RangeDensity>(q, kFine);
}

Real StudentizedRange::Cumulative(Real q) const {
  RequireDomain(IsRange(q));
  return q == 0 ? 0 : Lower(q, kFine);
}

Real StudentizedRange::UpperTail(Real q) const {
  RequireDomain(IsRange(q));
  return q == 0 ? 1 : std::min<Real>(1, Mixture<RangeUpper>(q, kFine));
}

/// The q whose tail is p, by Newton's method for the logarithms of both. They are related by an
/// almost straight line far out, so the method takes few steps from anywhere; where it leaves the
/// bracket, that is halved. Only the last steps are worth exact values. The direction is 1 for a
/// tail that rises with q, else -1.
template <class Tail>
Real StudentizedRange::RootOf(Tail tail, int direction, Real p) const {
  Real log_q = std::log(1 + 2 * std::sqrt(std::log(means_)));
  for (const Stage& stage : kStages) {
    const auto step_at = [&](Real log_at) {
      const Real q = std::exp(log_at);
      const Real value = tail(q, stage.tail);
      const Real slope = direction * q * Mixture<RangeDensity>(q, stage.density) / value;
      const Real gap = std::log(p) - std::log(value);
      const Real step = gap / slope;
      // A slope that a double cannot hold is unknown, but not its direction.
      return std::isfinite(step) ? step : direction * gap;
    };
    log_q = NewtonRoot(step_at, log_q, stage.last_step);
  }
  return std::exp(log_q);
}

Real StudentizedRange::LowerRoot(Real p) const {
  return RootOf([this](Real q, const Fineness& fineness) { return Lower(q, fineness); }, 1, p);
}

Real StudentizedRange::UpperRoot(Real p) const {
  return RootOf(
      [this](Real q, const Fineness& fineness) { return Mixture<RangeUpper>(q, fineness); }, -1, p);
}

Real StudentizedRange::Quantile(Real p) const {
  RequireDomain(IsProbability(p));
  return p <= 0.5L ? LowerRoot(p) : UpperRoot(1 - p);
}

Real StudentizedRange::UpperQuantile(Real p) const {
  RequireDomain(IsProbability(p));
  return p <= 0.5L ? UpperRoot(p) : LowerRoot(1 - p);
}

}  // namespace DistLib
