// Elementary distributions on an interval: uniform, arcsine, triangular and reciprocal.

#include "distributions/bounded.h"
#include "distributions/moments.h"

namespace DistLib {
namespace {

class Uniform : public BoundedDist {
 public:
  Uniform(double lower, double upper)
      : BoundedDist((RequireAbove("upper", upper, "lower", lower), lower), upper) {}

  DistLib::Moments Moments() const override {
    return {.mean = low() + width() / 2,
            .variance = width() * width() / 12,
            .skewness = 0,
            .kurtosis = 1.8L,
            .mode = {},
            .discrete_mean = {}};
  }
  std::optional<Real> Entropy() const override { return std::log(width()); }

 private:
  Real DensityAt(Real /*x*/) const override { return 1 / width(); }
  Real CumulativeAt(Real x) const override { return At(x).from_low / width(); }
  Real UpperTailAt(Real x) const override { return At(x).from_high / width(); }
  Real QuantileOf(Real p) const override { return Value({p * width(), (1 - p) * width()}); }
  Real UpperQuantileOf(Real q) const override { return Value({(1 - q) * width(), q * width()}); }
};

class Arcsine : public BoundedDist {
 public:
  Arcsine(double lower, double upper)
      : BoundedDist((RequireAbove("upper", upper, "lower", lower), lower), upper) {}

  DistLib::Moments Moments() const override {
    return {.mean = low() + width() / 2,
            .variance = width() * width() / 8,
            .skewness = 0,
            .kurtosis = 1.5L,
            .mode = {},  // the density is without bound at both ends
            .discrete_mean = {}};
  }
  std::optional<Real> Entropy() const override { return std::log(kPi / 4 * width()); }

 private:
  Real DensityAt(Real x) const override {
    const auto [from_low, from_high] = At(x);
    return 1 / (kPi * std::sqrt(from_low) * std::sqrt(from_high));
  }
  Real CumulativeAt(Real x) const override { return Within(At(x)); }
  Real UpperTailAt(Real x) const override {
    const auto [from_low, from_high] = At(x);
    return Within({from_high, from_low});
  }
  Real QuantileOf(Real p) const override { return Value({Distance(p), Distance(1 - p)}); }
  Real UpperQuantileOf(Real q) const override { return Value({Distance(1 - q), Distance(q)}); }

  static Real Within(const Inside& inside) {
    return 2 / kPi * std::atan2(std::sqrt(inside.from_low), std::sqrt(inside.from_high));
  }
  Real Distance(Real probability) const {
    const Real sine = std::sin(kPi / 2 * probability);
    return width() * sine * sine;
  }
};

class Triangular : public BoundedDist {
 public:
  Triangular(double lower, double mode, double upper)
      : BoundedDist((RequireAbove("upper", upper, "lower", lower), lower), upper),
        left_(Real{mode} - lower),
        right_(Real{upper} - mode) {
    if (!(left_ >= 0 && right_ >= 0))
      throw ParameterError("mode", "must be between lower and upper", mode);
  }

  DistLib::Moments Moments() const override {
    const Real sum = left_ * left_ + left_ * right_ + right_ * right_;
    const Real skewed = (right_ - left_) * (2 * right_ + left_) * (right_ + 2 * left_);
    return {.mean = low() + (2 * left_ + right_) / 3,
            .variance = sum / 18,
            .skewness = std::numbers::sqrt2_v<Real> / 5 * skewed / std::pow(sum, 1.5L),
            .kurtosis = 2.4L,
            .mode = low() + left_,
            .discrete_mean = {}};
  }
  std::optional<Real> Entropy() const override { return 0.5L + std::log(width() / 2); }

 private:
  Real DensityAt(Real x) const override {
    const auto [from_low, from_high] = At(x);
    if (from_low < left_) return 2 * from_low / width() / left_;
    return right_ > 0 ? 2 * from_high / width() / right_ : 2 / width();
  }
  Real CumulativeAt(Real x) const override {
    const auto [from_low, from_high] = At(x);
    return from_low <= left_ ? Within(from_low, left_) : Past(from_low - left_, left_, right_);
  }
  Real UpperTailAt(Real x) const override {
    const auto [from_low, from_high] = At(x);
    return from_high <= right_ ? Within(from_high, right_)
                               : Past(from_high - right_, right_, left_);
  }
  Real QuantileOf(Real p) const override {
    return p * width() <= left_ ? low() + Distance(p, left_)
                                : low() + FarDistance(p, left_, right_);
  }
  Real UpperQuantileOf(Real q) const override {
    return q * width() <= right_ ? high() - Distance(q, right_)
                                 : high() - FarDistance(q, right_, left_);
  }

  /// The probability from an end to this far beyond the mode.
  Real Past(Real beyond, Real near_side, Real far_side) const {
    return near_side / width() + beyond / width() * ((2 * far_side - beyond) / far_side);
  }
  /// The distance from an end whose probability reaches beyond the mode.
  Real FarDistance(Real probability, Real near_side, Real far_side) const {
    const Real share = std::fmin((probability * width() - near_side) / far_side, 1);
    return near_side + far_side * share / (1 + std::sqrt(1 - share));
  }
  /// The probability within a distance from an end, on that side of the mode.
  Real Within(Real distance, Real side) const {
    return side > 0 ? distance / width() * (distance / side) : 0;
  }
  Real Distance(Real probability, Real side) const {
    return std::sqrt(probability * width() * side);
  }

  Real left_;
  Real right_;
};

/// Log-uniform.
class Reciprocal : public BoundedDist {
 public:
  Reciprocal(double lower, double upper)
      : BoundedDist((RequireAbove("upper", upper, "lower", lower), lower), upper),
        log_ratio_(std::log1p(width() / low())) {}

  DistLib::Moments Moments() const override {
    const auto raw = [this](int r) {
      return std::pow(low(), static_cast<Real>(r)) * std::expm1(r * log_ratio_) / (r * log_ratio_);
    };
    return FromRawMoments(raw, 5, low());
  }
  std::optional<Real> Entropy() const override {
    return std::log(log_ratio_) + (std::log(low()) + std::log(high())) / 2;
  }

 private:
  Real DensityAt(Real x) const override { return 1 / (x * log_ratio_); }
  Real CumulativeAt(Real x) const override {
    return std::log1p(At(x).from_low / low()) / log_ratio_;
  }
  Real UpperTailAt(Real x) const override { return std::log1p(At(x).from_high / x) / log_ratio_; }
  Real QuantileOf(Real p) const override { return low() * std::exp(p * log_ratio_); }
  Real UpperQuantileOf(Real q) const override { return high() * std::exp(-q * log_ratio_); }

  Real log_ratio_;
};

}  // namespace

const Description kUniform{.name = "uniform",
                           .other_names = {"rectangular"},
                           .parameters = {{"lower", kAnyNumber, 0.0}, {"upper", kAnyNumber, 1.0}},
                           .support = "numbers from lower to upper",
                           .formula = "F(x) = (x - lower) / (upper - lower)",
                           .source = "Johnson, Kotz and Balakrishnan 1995, chapter 26",
                           .make = Make<Uniform, 2>};

const Description kArcsine{.name = "arcsine",
                           .other_names = {},
                           .parameters = {{"lower", kAnyNumber, 0.0}, {"upper", kAnyNumber, 1.0}},
                           .support = "numbers from lower to upper",
                           .formula = "F(x) = 2 / pi arcsin(sqrt((x - lower) / (upper - lower)))",
                           .source = "Johnson, Kotz and Balakrishnan 1995, chapter 25",
                           .make = Make<Arcsine, 2>};

const Description kTriangular{
    .name = "triangular",
    .other_names = {},
    .parameters = {{"lower", kAnyNumber, 0.0},
                   {"mode", kAnyNumber, 0.5},
                   {"upper", kAnyNumber, 1.0}},
    .support = "numbers from lower to upper",
    .formula = "f(x) rises linearly from lower to mode and falls linearly to upper",
    .source = "Johnson, Kotz and Balakrishnan 1995, chapter 26",
    .make = Make<Triangular, 3>};

const Description kReciprocal{.name = "reciprocal",
                              .other_names = {"log-uniform"},
                              .parameters = {{"lower", kPositive, {}}, {"upper", kPositive, {}}},
                              .support = "numbers from lower to upper",
                              .formula = "F(x) = log(x / lower) / log(upper / lower)",
                              .source = "Hamming 1970, Bell System Technical Journal 49, 1609-1625",
                              .make = Make<Reciprocal, 2>};

}  // namespace DistLib
