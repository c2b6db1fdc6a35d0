#include "distributions/mills.h"
#include "distributions/search.h"

namespace DistLib {
namespace {

/// So far from the mean, or from the bound that cuts it off, nothing is left of the probability.
constexpr Real kReach = 40;

/// All probabilities are relative to the density at the peak, as they may be too small themselves.
/// The calculation is for a bound below that is nearer to the mean than that above; otherwise, it
/// is mirrored.
class TruncatedNormal : public Searched<LogitScale> {
 public:
  TruncatedNormal(double mean, double deviation, double lower, double upper)
      : Searched(Reach(mean, deviation, lower, upper), lower, upper),
        mean_(mean),
        deviation_(deviation),
        lower_(lower),
        upper_(upper),
        mirrored_((lower_ - mean_) + (upper_ - mean_) < 0),
        peak_(std::max<Real>(Score(mirrored_ ? upper_ : lower_), 0)),
        whole_(Mass(lower_, upper_)) {}

  DistLib::Moments Moments() const override {
    return SearchedMoments(std::clamp(mean_, lower_, upper_));
  }
  std::optional<Real> Entropy() const override {
    const Real near = mirrored_ ? upper_ : lower_, far = mirrored_ ? lower_ : upper_;
    const auto end = [this](Real x) { return Score(x) * Relative(x); };
    const Real ends = end(near) - end(far);
    return std::log(deviation_ * whole_) + (1 - peak_ * peak_ + ends / whole_) / 2;
  }

 private:
  /// The part of the support that counts.
  static LogitScale Reach(double mean, double deviation, double lower, double upper) {
    RequireAbove("upper", upper, "lower", lower);
    const Real reach = kReach * deviation;
    const Real centre = std::clamp(mean, lower, upper);
    return {std::max<Real>(lower, centre - reach), std::min<Real>(upper, centre + reach)};
  }

  Real Score(Real x) const { return (mirrored_ ? mean_ - x : x - mean_) / deviation_; }
  /// The density at x relative to the peak, and its logarithm.
  Real LogRelative(Real x) const {
    const Real score = Score(x);
    const Real beyond = peak_ > 0 ? (mirrored_ ? upper_ - x : x - lower_) / deviation_ : score;
    return -beyond * (score + peak_) / 2;
  }
  Real Relative(Real x) const { return std::exp(LogRelative(x)); }
  /// The probability between two values, relative to the density at the peak.
  Real Mass(Real low, Real high) const {
    const Real near = mirrored_ ? high : low, far = mirrored_ ? low : high;
    const Real from = Score(near), to = Score(far), width = (high - low) / deviation_;
    if (from >= 0) return Relative(near) * NormalStretch(from, width);
    if (to <= 0) return Relative(far) * NormalStretch(-to, width);
    return NormalStretch(0, -from) + NormalStretch(0, to);
  }

  Real LogDensityAt(Real x) const override {
    return LogRelative(x) - std::log(deviation_ * whole_);
  }
  Real DensityAt(Real x) const override { return std::exp(LogDensityAt(x)); }
  Real CumulativeAt(Real x) const override { return Mass(lower_, x) / whole_; }
  Real UpperTailAt(Real x) const override { return Mass(x, upper_) / whole_; }

  Real mean_;
  Real deviation_;
  Real lower_;
  Real upper_;
  bool mirrored_;
  Real peak_;   // the score of the highest density
  Real whole_;  // the probability of the support in the whole normal distribution
};

}  // namespace

const Description kTruncatedNormal{
    .name = "truncated normal",
    .other_names = {},
    .parameters = {{"mean", kAnyNumber, {}},
                   {"deviation", kPositive, {}},
                   {"lower", kAnyNumber, -1e300},  // no bound at all
                   {"upper", kAnyNumber, 1e300}},
    .support = "numbers from lower to upper",
    .formula =
        "the normal distribution with this mean and deviation, if it is known that lower <= x <= "
        "upper",
    .source = "Johnson, Kotz and Balakrishnan 1994, section 13.10.1",
    .make = Make<TruncatedNormal, 4>};

}  // namespace DistLib
