// An integral over the position of the range (Hartley, 1942, "The range in random samples"). Each
// tail has one of its own whose terms are all positive, so both keep their relative accuracy: the
// lower tail collects powers of the normal probability between two limits, the upper tail what
// these powers lack, compared with those of the probability above the lower limit.
#include "distributions/normal_range.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <numbers>

namespace DistLib {
namespace {

/// The upper tail of the range of 200 values is below 1e-30 from here on.
constexpr double kWide = 18;
/// And below the smallest double from here on.
constexpr double kWidest = 70;
constexpr double kSqrtHalf = 1 / std::numbers::sqrt2;

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
  double series_[kTerms] = {};
};

/// The step of an integral over the position of the range. The curvature is that of the logarithm
/// of the integrand at the middle of a narrow range. With the number of means, the density of the
/// smallest of them becomes narrower; the second term follows its width.
double PositionStep(int means, double curvature) {
  return std::min(0.72 / std::sqrt(curvature), 1 / (1.15 + 1.15 * std::log(means)));
}

}  // namespace

double RangeLower::At(double w) const {
  if (w >= kWide) return 1;
  const Between between(w);
  const double step = PositionStep(means_, 1 + (means_ - 1) * between.Curvature());
  return means_ * TrapezoidalIntegralOfEven(step, fineness_, [&](double u) {
           const double ends = (NormalDensity(u - w / 2) + NormalDensity(u + w / 2)) / 2;
           return ends * Power(between(u), means_ - 1);
         });
}

double RangeLower::RoughLog(double w, int means) {
  constexpr double kSmallest = std::numeric_limits<double>::min();
  return (means - 1) * std::log(std::max(std::erf(w * kSqrtHalf / 2), kSmallest));
}

RangeUpper::RangeUpper(int means, const Fineness& fineness)
    : means_(means), fineness_(fineness), step_(PositionStep(means, 1) * fineness.step) {}

RangeUpper::Node RangeUpper::Computed(double z) const {
  const double above = NormalUpper(z);
  return {above, NormalDensity(z) * Power(above, means_ - 1)};
}

RangeUpper::Node RangeUpper::NodeAt(double index) {
  constexpr double kFirst = -400;  // far below half the widest range, in the smallest steps
  const double place = index - kFirst;
  if (!(place >= 0 && place < static_cast<double>(nodes_.size()))) return Computed(index * step_);
  Node& node = nodes_[static_cast<std::size_t>(place)];
  if (node.weight == 0) node = Computed(index * step_);
  return node;
}

double RangeUpper::At(double w) {
  constexpr double kLogEpsilon = -40;
  if (w >= kWidest) return 0;
  if (RangeLower::RoughLog(w, means_) < kLogEpsilon) return 1;
  const double highest = -std::max(w / 2, std::sqrt(std::log(means_)));
  const double middle = std::round(highest / step_);
  const Fineness of_steps{1, fineness_.negligible};
  return means_ * step_ * TrapezoidalIntegral(1.0, of_steps, [&](double offset) {
           const Node node = NodeAt(middle + offset);
           const double beyond = NormalUpper((middle + offset) * step_ + w) / node.above;
           return node.weight * ComplementOfPower(beyond, means_ - 1);
         });
}

/// As if the differences of all pairs were independent.
double RangeUpper::RoughLog(double w, int means) {
  if (w > kWidest / 2) return -w * w / 4;
  const double pairs = means * (means - 1) / 2.0;
  return std::log(-std::expm1(pairs * std::log1p(-std::erfc(w / 2))));
}

double RangeDensity::At(double w) const {
  if (w >= kWidest) return 0;
  const Between between(w);
  const double step = PositionStep(means_, 2 + (means_ - 2) * between.Curvature());
  const double ends = means_ * (means_ - 1) * std::exp(-w * w / 4) / (2 * std::numbers::pi);
  return ends * TrapezoidalIntegralOfEven(step, fineness_, [&](double u) {
           return std::exp(-u * u) * Power(between(u), means_ - 2);
         });
}

double RangeDensity::RoughLog(double w, int means) {
  return RangeLower::RoughLog(w, means - 1) - w * w / 4 + std::log(w);
}

}  // namespace DistLib
