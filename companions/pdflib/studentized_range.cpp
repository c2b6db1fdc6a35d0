// The probability is a double integral: over the estimate s of the deviation, and within it over
// the position of a range of width w = q s (Hartley, 1942; Copenhaver and Holland, 1988).
//
// - Each tail has an integral of its own whose terms are all positive, so both keep their relative
//   accuracy. The lower tail of the range collects powers of the normal probability between two
//   limits. The upper tail collects what these powers lack, compared with those of the probability
//   above the lower limit.
// - The integrands are analytic and vanish at both ends. The trapezoidal rule then converges
//   exponentially (Trefethen and Weideman, 2014): a step h leaves 2 exp(-2 pi^2 / h^2) of a normal
//   density of deviation 1, which is 1e-15 for h = 0.75. So the steps follow from the width of the
//   narrowest factor, and a sum ends where its terms vanish.
// - With few degrees of freedom the outer integrand falls as slowly as a small power of s. A
//   change of variable makes this side fall double-exponentially (Takahasi and Mori, 1974).
#include "companions/pdflib/studentized_range.h"

#include <algorithm>
#include <array>
#include <boost/math/special_functions/gamma.hpp>
#include <boost/math/special_functions/log1p.hpp>
#include <cmath>
#include <limits>
#include <numbers>
#include <stdexcept>

namespace DistLib {
namespace {

constexpr double kMostMeans = 200;
constexpr double kLeastDf = 0.5;
/// From here on the estimate differs from the deviation by too little to change a digit.
constexpr double kInfiniteDf = 1e17;
/// The upper tail of the range of kMostMeans values is below 1e-30 from here on.
constexpr double kWide = 18;
/// And below the smallest double from here on.
constexpr double kWidest = 70;
constexpr double kSqrtHalf = 1 / std::numbers::sqrt2;
constexpr double kPi = std::numbers::pi;

void Require(bool in_domain) {
  if (!in_domain) throw std::domain_error("outside the domain");
}

void RequireRange(Real q) { Require(q >= 0 && q <= std::numeric_limits<double>::max()); }
void RequireProbability(Real p) { Require(p > 0 && p < 1); }

double NormalDensity(double x) {
  return kSqrtHalf * std::numbers::inv_sqrtpi * std::exp(-x * x / 2);
}

double NormalUpper(double x) { return std::erfc(x * kSqrtHalf) / 2; }

double Power(double base, int exponent) {
  double power = 1;
  for (; exponent > 0; exponent /= 2, base *= base)
    if (exponent % 2 == 1) power *= base;
  return power;
}

/// 1 - (1 - part)^exponent, without cancellation however small the part is.
double ComplementOfPower(double part, int exponent) {
  double complement = 0;
  for (; exponent > 0; exponent /= 2, part *= 2 - part)
    if (exponent % 2 == 1) complement += part * (1 - complement);
  return complement;
}

/// `sum` and the terms at one step, two steps and so on, up to where they vanish beside it.
template <class Number, class Term>
Number SumOutwards(Number sum, Number step, Term term) {
  constexpr Number kNegligible = 1e-16;
  constexpr int kMostTerms = 1000;
  Number previous = 0;
  for (int i = 1; i < kMostTerms; ++i) {
    const Number value = term(i * step);
    sum += value;
    const bool counts = value > kNegligible * sum || value > previous;  // a NaN does not
    if (!counts) break;
    previous = value;
  }
  return sum;
}

/// The integral by the trapezoidal rule, from near the highest term outwards.
template <class Number, class Term>
Number Integral(Number step, Term term) {
  return step * SumOutwards(SumOutwards(term(0), step, term), -step, term);
}

template <class Number, class Term>
Number IntegralOfEven(Number step, Term term) {
  return 2 * step * SumOutwards(term(0) / 2, step, term);
}

/// The normal probability between two limits that are w apart, as a function of their middle u.
class Between {
 public:
  explicit Between(double w) : w_(w) {
    if (w < kNarrow) SetSeries();
  }

  double operator()(double u) const {
    if (w_ < kNarrow) return w_ * NormalDensity(u) * Series(u * u);
    const double low = u - w_ / 2;
    const double high = u + w_ / 2;
    if (low > 0) return NormalUpper(low) - NormalUpper(high);
    return (std::erf(high * kSqrtHalf) - std::erf(low * kSqrtHalf)) / 2;
  }

  /// How fast the slope of the logarithm falls at u = 0.
  double Curvature() const {
    return w_ < kNarrow ? std::exp(-w_ * w_ / 8) / series_[0]
                        : w_ * NormalDensity(w_ / 2) / (*this)(0);
  }

 private:
  static constexpr double kNarrow = 1;  // below, a difference of probabilities loses digits
  static constexpr int kTerms = 17;

  /// The mean of exp(-v^2 / 2) cosh(u v) over -w / 2 < v < w / 2 as a series in u^2. Its terms
  /// contain the means of v^(2 i) exp(-v^2 / 2), which follow from each other by partial
  /// integration.
  void SetSeries() {
    const double square = w_ * w_ / 4;
    const double end = std::exp(-square / 2);
    double mean = 0;  // over (w / 2)^(2 i)
    for (int i = kTerms - 1; i >= 0; --i) {
      mean = (end + mean * square) / (2 * i + 1);
      series_[i] = mean;
    }
    double power = 1;  // over the factorial of 2 i
    for (int i = 1; i < kTerms; ++i) {
      power *= square / ((2 * i - 1) * 2 * i);
      series_[i] *= power;
    }
  }

  double Series(double square) const {
    double sum = 0;
    for (int i = kTerms - 1; i >= 0; --i) sum = sum * square + series_[i];
    return sum;
  }

  double w_;
  std::array<double, kTerms> series_{};
};

/// The step of an integral over the position of the range. The curvature is that of the logarithm
/// of the integrand at the middle of a narrow range. With the number of means, the density of the
/// smallest of them becomes narrower; the second term follows its width.
double PositionStep(int means, double curvature) {
  return std::min(0.72 / std::sqrt(curvature), 1 / (1.15 + 1.15 * std::log(means)));
}

// The three functions of the range of `means` standard normal values that are averaged over the
// estimate. RoughLog is within a few units of their logarithm up to a constant, for finding the
// highest term; Factor is what the density of the quotient is multiplied by.

struct RangeLower {
  static double At(double w, int means) {
    if (w >= kWide) return 1;
    const Between between(w);
    const double step = PositionStep(means, 1 + (means - 1) * between.Curvature());
    return means * IntegralOfEven(step, [&](double u) {
             const double ends = (NormalDensity(u - w / 2) + NormalDensity(u + w / 2)) / 2;
             return ends * Power(between(u), means - 1);
           });
  }
  static double RoughLog(double w, int means) {
    constexpr double kSmallest = std::numeric_limits<double>::min();
    return (means - 1) * std::log(std::max(std::erf(w * kSqrtHalf / 2), kSmallest));
  }
  static Real Factor(Real) { return 1; }
};

struct RangeUpper {
  static double At(double w, int means) {
    constexpr double kLogEpsilon = -40;
    if (w >= kWidest) return 0;
    if (RangeLower::RoughLog(w, means) < kLogEpsilon) return 1;
    const double middle = -std::max(w / 2, std::sqrt(std::log(means)));
    return means * Integral(PositionStep(means, 1), [&](double offset) {
             const double smallest = middle + offset;
             const double above = NormalUpper(smallest);
             const double beyond = NormalUpper(smallest + w) / above;
             return NormalDensity(smallest) * Power(above, means - 1) *
                    ComplementOfPower(beyond, means - 1);
           });
  }
  /// As if the differences of all pairs were independent.
  static double RoughLog(double w, int means) {
    if (w > kWidest / 2) return -w * w / 4;
    const double pairs = means * (means - 1) / 2.0;
    return std::log(-std::expm1(pairs * std::log1p(-std::erfc(w / 2))));
  }
  static Real Factor(Real) { return 1; }
};

struct RangeDensity {
  static double At(double w, int means) {
    if (w >= kWidest) return 0;
    const Between between(w);
    const double step = PositionStep(means, 2 + (means - 2) * between.Curvature());
    const double ends = means * (means - 1) * std::exp(-w * w / 4) / (2 * kPi);
    return ends * IntegralOfEven(step, [&](double u) {
             return std::exp(-u * u) * Power(between(u), means - 2);
           });
  }
  static double RoughLog(double w, int means) {
    return RangeLower::RoughLog(w, means - 1) - w * w / 4 + std::log(w);
  }
  static Real Factor(Real s) { return s; }
};

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

}  // namespace

StudentizedRange::StudentizedRange(double means, double df) : means_(2), df_(df) {
  Require(means >= 2 && means <= kMostMeans && means == std::floor(means) && df >= kLeastDf);
  means_ = static_cast<int>(means);
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
Real StudentizedRange::Mixture(Real q) const {
  if (df_ >= kInfiniteDf) return Part::At(static_cast<double>(q), means_);
  // At the peak, the logarithm of the integrand is curved like that of a chi density with `power`
  // degrees of freedom; the distribution of the logarithm of the range can be narrower. A chi
  // density is analytic only up to a distance of pi / 4, whence the constant.
  const double peak = PeakOf<Part>(static_cast<double>(q));
  const double log_means = std::log(means_);
  const double power = df_ * std::max(1.0, std::exp(2 * peak)) + 2 * log_means * log_means;
  const Real step = 1 / std::sqrt(56 + 4.2 * power);
  constexpr Real kBend = 0.2L;  // of the variable: t goes down double-exponentially beyond it
  return Integral(step / (1 + kBend), [&](Real x) -> Real {
    const Real bend = kBend * std::expm1(-x);
    const Real t = peak + x - bend;
    const Real s = std::exp(t);
    const Real weight = scale_ * std::exp(df_ * LogChiPower(t)) * (1 + kBend + bend);
    if (!(weight > 0)) return 0;
    const Real w = std::min<Real>(q * s, std::numeric_limits<double>::max());
    return weight * Part::Factor(s) * Part::At(static_cast<double>(w), means_);
  });
}

Real StudentizedRange::Density(Real q) const {
  RequireRange(q);
  return Mixture<RangeDensity>(q);
}

Real StudentizedRange::Cumulative(Real q) const {
  RequireRange(q);
  if (q == 0) return 0;
  // Where it is not small, the complement is as accurate and its integrand has no knee.
  constexpr double kLogHalf = -0.7;
  if (RangeUpper::RoughLog(static_cast<double>(q), means_) < kLogHalf) return 1 - UpperTail(q);
  return Mixture<RangeLower>(q);
}

Real StudentizedRange::UpperTail(Real q) const {
  RequireRange(q);
  return q == 0 ? 1 : std::min<Real>(1, Mixture<RangeUpper>(q));
}

/// The q whose tail is p, by Newton's method for the logarithms of both. They are related by an
/// almost straight line far out, so Newton's method takes few steps from anywhere; where it leaves
/// the bracket, it is halved. The direction is 1 for a tail that rises with q, else -1.
template <class Tail>
Real StudentizedRange::RootOf(Tail tail, int direction, Real p) const {
  constexpr Real kLastStep = 1e-9L;  // Newton's method squares it
  constexpr int kMostSteps = 200;
  Real low = std::log(std::numeric_limits<double>::denorm_min());
  Real high = std::log(std::numeric_limits<double>::max());
  Real log_q = std::log(1 + 2 * std::sqrt(std::log(means_)));
  for (int i = 0; i < kMostSteps; ++i) {
    const Real q = std::exp(log_q);
    const Real value = tail(q);
    ((value < p) == (direction > 0) ? low : high) = log_q;
    const Real step = std::log(value / p) * value / (q * Density(q)) * -direction;
    if (std::fabs(step) < kLastStep) return std::exp(log_q + step);
    log_q += step;
    if (!(log_q > low && log_q < high)) log_q = (low + high) / 2;
  }
  throw std::overflow_error("no quantile in the range of doubles");
}

Real StudentizedRange::LowerRoot(Real p) const {
  return RootOf([this](Real q) { return Cumulative(q); }, 1, p);
}

Real StudentizedRange::UpperRoot(Real p) const {
  return RootOf([this](Real q) { return UpperTail(q); }, -1, p);
}

Real StudentizedRange::Quantile(Real p) const {
  RequireProbability(p);
  return p <= 0.5L ? LowerRoot(p) : UpperRoot(1 - p);
}

Real StudentizedRange::UpperQuantile(Real p) const {
  RequireProbability(p);
  return p <= 0.5L ? UpperRoot(p) : LowerRoot(1 - p);
}

}  // namespace DistLib
