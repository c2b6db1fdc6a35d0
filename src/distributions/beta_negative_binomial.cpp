#include <algorithm>

#include "distributions/beta_tails.h"
#include "distributions/catalogue.h"
#include "distributions/moments.h"
#include "distributions/summed_dist.h"

namespace DistLib {
namespace {

/// The failures before so many successes, whose probability has a beta distribution. The successes
/// and the second shape may change places; `less_` and `more_` are these two.
class BetaNegativeBinomial : public DiscreteDist {
 public:
  BetaNegativeBinomial(double successes, double a, double b)
      : DiscreteDist(0, kInfinity),
        a_(a),
        less_(std::min(successes, b)),
        more_(std::max(successes, b)),
        c_(a_ + less_ + more_) {}

  DistLib::Moments Moments() const override {
    // E[X (X - 1) ... (X - r + 1)]
    const auto factorial = [this](int r) {
      Real product = 1;
      for (int i = 0; i < r; ++i) product *= (less_ + i) * (more_ + i) / (a_ - i - 1);
      return product;
    };
    const auto raw = [&](int r) {
      constexpr Real kStirling[4][4] = {{1}, {1, 1}, {1, 3, 1}, {1, 7, 6, 1}};
      Real sum = 0;
      for (int i = 0; i < r; ++i) sum += kStirling[r - 1][i] * factorial(i + 1);
      return sum;
    };
    DistLib::Moments moments = FromRawMoments(raw, a_, Mode());
    if (moments.mean) moments.discrete_mean = WholeMean(*moments.mean);
    return moments;
  }

 private:
  Real Mode() const { return less_ > 1 ? std::floor((less_ - 1) * ((more_ - 1) / (a_ + 1))) : 0; }

  // A beta and a negative binomial density over a beta one, at the same place, which may be
  // anywhere; at the last one's mean, none of the factors is small unless the result is.
  Scaled ProbabilityOf(Real k) const override {
    const Real n = c_ + k, x = (a_ + less_) / n, y = (more_ + k) / n;
    const Real lambda = (a_ * k - less_ * more_) / n;
    return BetaPower({a_, more_, x, y, lambda}) * NegativeBinomialTerm({less_, k, x, y, -lambda}) /
           BetaPower({a_ + less_, more_ + k, x, y, 0});
  }

  Real LowerTail(Real k) const override {
    const Real upper = k < Middle() ? 1 : UpperSum(k);
    return upper < kMost ? 1 - upper : LowerSum(k);
  }
  Real UpperTailBeyond(Real k) const override {
    const Real lower = k < Middle() ? LowerSum(k) : 1;
    return lower < kMost ? 1 - lower : UpperSum(k);
  }
  /// Up to this much, a tail leaves the digits of the other one.
  static constexpr Real kMost = 0.99L;
  /// Near the mode; the median may be far above.
  Real Middle() const { return less_ * (more_ / (a_ + 1)); }

  // Both tails are the probability of k + 1 by a hypergeometric series 3F2 at 1; Thomae's relations
  // turn them into series with positive terms that converge the faster the greater k is (or
  // `more_`, below). Near k = 0 the probabilities themselves are summed.
  Real UpperSum(Real k) const {
    constexpr Real kEnough = 100;
    const Real from = std::max(k, kEnough);
    const auto ratio = [&](Real j) {
      return (a_ + more_ + j) / (c_ + from + 1 + j) * ((a_ + less_ + j) / (a_ + 1 + j));
    };
    Real sum = ProbabilityOf(from + 1).Value() * ((from + 1) / a_) * SumOfProducts(ratio, kTerms);
    for (Real j = from; j > k; --j) sum += ProbabilityOf(j).Value();
    return sum;
  }
  Real LowerSum(Real k) const {
    constexpr Real kShort = 10'000;
    if (k <= kShort || more_ < 40) {
      const auto down = [&](Real i) {
        const Real j = k - i;
        return j / (less_ + j - 1) * ((c_ + j - 1) / (more_ + j - 1));
      };
      return ProbabilityOf(k).Value() * SumOfProducts(down, std::min(k, kTerms));
    }
    const auto ratio = [&](Real j) {
      return (less_ + k + 1 + j) / (c_ + k + 1 + j) * ((a_ + less_ + j) / (less_ + 1 + j));
    };
    return ProbabilityOf(k + 1).Value() * ((k + 1) / less_) * SumOfProducts(ratio, kTerms);
  }
  static constexpr Real kTerms = 1e6L;

  Real a_;
  Real less_;
  Real more_;
  Real c_;
};

/// The number of terms of the sums grows with the shapes. With a small first shape, the lower tail
/// would be long and small.
constexpr Domain kShape{.low = 0, .high = 3000, .with_high = true};
constexpr Domain kFirstShape{.low = 0.01, .high = 1e4, .with_low = true, .with_high = true};

}  // namespace

const Description kBetaNegativeBinomial{
    .name = "beta-negative-binomial",
    .other_names = {"beta-Pascal", "generalised Waring"},
    .parameters = {{"successes", kShape, {}}, {"shape1", kFirstShape, {}}, {"shape2", kShape, {}}},
    .kind = Kind::kDiscrete,
    .support = "whole numbers from 0",
    .formula =
        "f(x) = gamma(successes + x) / (gamma(successes) x!) B(successes + shape1, x + shape2) / "
        "B(shape1, shape2), B the beta function",
    .source = "Johnson, Kemp and Kotz 2005, 6.2.3",
    .make = Make<BetaNegativeBinomial, 3>};

}  // namespace DistLib
