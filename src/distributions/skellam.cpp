#include <algorithm>

#include "distributions/catalogue.h"
#include "distributions/cores.h"
#include "distributions/discrete_dist.h"
#include "distributions/moments.h"
#include "distributions/poisson_tails.h"
#include "distributions/trapezoidal.h"

namespace DistLib {
namespace {

/// The difference of two Poisson variables. Its probabilities and tails are sums over the values j
/// of the variable with the smaller mean, whose terms are positive and have one peak. Where it is
/// wide, every h-th term and the factor h do as well, by the same theorem as for integrals.
class Skellam : public DiscreteDist {
 public:
  Skellam(double mean1, double mean2)
      : DiscreteDist(-kInfinity, kInfinity),
        mean1_(mean1),
        mean2_(mean2),
        first_is_smaller_(mean1 < mean2),
        smaller_(std::min(mean1_, mean2_)),
        greater_(std::max(mean1_, mean2_)) {}

  DistLib::Moments Moments() const override {
    const Real mean = mean1_ - mean2_, sum = mean1_ + mean2_;
    DistLib::Moments moments = FromCumulants({mean, sum, mean, sum}, Mode());
    moments.discrete_mean = WholeMean(mean);
    return moments;
  }

 private:
  /// Less than 1 from the mean.
  Real Mode() const {
    const Real low = std::floor(mean1_ - mean2_);
    return ProbabilityOf(low).Log() >= ProbabilityOf(low + 1).Log() ? low : low + 1;
  }
  Start SearchStart() const override { return {mean1_ - mean2_, std::sqrt(mean1_ + mean2_)}; }
  Scaled ProbabilityOf(Real k) const override {
    const Real ahead = Ahead(k);
    const Real peak = Peak(ahead);
    // Divided by its value at the peak, which itself may be too small.
    const Scaled highest = PoissonPower(peak, smaller_) * PoissonPower(peak + ahead, greater_);
    const auto term = [&](Real j) -> Real {
      if (j + ahead < 0) return 0;
      return (PoissonPower(j, smaller_) * PoissonPower(j + ahead, greater_) / highest).Value();
    };
    return highest * Sum(peak, std::min(peak, peak + ahead), term);
  }
  Real LowerTail(Real k) const override { return Tail(false, k); }
  Real UpperTailBeyond(Real k) const override { return Tail(true, k); }

  /// By how much the variable with the greater mean is ahead if the difference is k.
  Real Ahead(Real k) const { return first_is_smaller_ ? -k : k; }

  Real Tail(bool upper, Real k) const {
    const bool beyond = upper != first_is_smaller_;
    // Beyond k, or from there on: the greater one is more than `ahead` ahead, or at most so much.
    const Real ahead = Ahead(k) - (first_is_smaller_ ? 1 : 0);
    const Real above_mean = ahead - (greater_ - smaller_);
    const bool far = beyond ? above_mean > 0 : above_mean < 0;
    const Real peak = far ? Peak(ahead) : std::floor(smaller_);
    const auto term = [&](Real j) -> Real {
      const Real own = PoissonPower(j, smaller_).Value(), other = j + ahead;
      if (other < 0) return beyond ? own : 0;
      return own * (beyond ? PoissonUpper(other, greater_) : PoissonLower(other, greater_));
    };
    return Sum(peak, far ? std::min(peak, peak + ahead) : smaller_, term);
  }

  /// Where j (j + ahead) = mean1 mean2, the probabilities of j and j + ahead together are greatest.
  Real Peak(Real ahead) const {
    const Real half = ahead / 2, product = mean1_ * mean2_;
    const Real root = std::sqrt(half * half + product);
    const Real j = half > 0 ? product / (half + root) : root - half;
    return std::max(std::floor(j), -ahead);
  }

  /// The sum of terms over all j from 0, from about their peak outwards; `narrow` is the smaller of
  /// the numbers whose root is the width of a factor.
  template <class Term>
  static Real Sum(Real peak, Real narrow, Term term) {
    constexpr Real kWide = 20, kPart = 0.45L;  // leaves exp(-48) of the sum
    const Real step = narrow > kWide ? std::floor(kPart * std::sqrt(narrow)) : 1;
    const auto at = [&](Real distance) {
      const Real j = peak + distance;
      return j < 0 ? 0 : term(j);
    };
    return step * SumOutwards(SumOutwards(at(0), step, kNothing, at), -step, kNothing, at);
  }
  static constexpr double kNothing = 1e-20;

  Real mean1_;
  Real mean2_;
  bool first_is_smaller_;
  Real smaller_;
  Real greater_;
};

/// The tails of a Poisson variable take longer the greater its mean.
constexpr Domain kMean{.low = 0, .high = 5e5, .with_high = true};

}  // namespace

const Description kSkellam{
    .name = "Skellam",
    .other_names = {"Poisson difference"},
    .parameters = {{"mean1", kMean, {}}, {"mean2", kMean, {}}},
    .kind = Kind::kDiscrete,
    .support = "whole numbers",
    .formula =
        "f(x) = exp(-mean1 - mean2) (mean1 / mean2)^(x / 2) I(|x|, 2 sqrt(mean1 mean2)), I the "
        "modified Bessel function",
    .source = "Johnson, Kemp and Kotz 2005, 4.12.3",
    .make = Make<Skellam, 2>};

}  // namespace DistLib
