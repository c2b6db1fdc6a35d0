// Numbers of successes among draws from an urn: without replacement (hypergeometric), up to a
// number of failures (negative hypergeometric), and with a random share of successes
// (beta-binomial).

#include <algorithm>

#include "distributions/beta_tails.h"
#include "distributions/catalogue.h"
#include "distributions/summed_dist.h"

namespace DistLib {
namespace {

/// choose(n, k) x^k y^(n - k), where x + y = 1; lambda = k - n x.
Scaled BinomialTerm(Real n, Real k, Real x, Real y, Real lambda) {
  if (k == 0) return {1, n * (y < 0.5L ? std::log(y) : std::log1p(-x))};
  if (k == n) return {1, n * (x < 0.5L ? std::log(x) : std::log1p(-y))};
  return BetaPower({k, n - k, x, y, lambda}) * (n / k / (n - k));
}

class Hypergeometric : public SummedDist {
 public:
  Hypergeometric(Real draws, Real successes, Real population)
      : SummedDist(static_cast<double>(std::max<Real>(0, draws + successes - population)),
                   static_cast<double>(std::min(draws, successes))),
        draws_(draws),
        successes_(successes),
        failures_(population - successes),
        population_(population) {}
  Hypergeometric(double draws, double successes, double population)
      : Hypergeometric(
            (RequireAtLeast("population", population, "draws", draws), Real{draws}),
            (RequireAtLeast("population", population, "successes", successes), Real{successes}),
            Real{population}) {}

  DistLib::Moments Moments() const override {
    const Real n = draws_, k = successes_, all = population_, variance = Variance();
    DistLib::Moments moments;
    moments.mean = Mean();
    moments.variance = variance;
    moments.mode = std::floor((n + 1) * (k + 1) / (all + 2));
    moments.discrete_mean = WholeMean(Mean());
    if (variance == 0) return moments;
    if (all <= 3) {  // two values, the higher one with the probability p
      const Real p = Mean() - Lowest();
      moments.skewness = (1 - 2 * p) / std::sqrt(variance);
      moments.kurtosis = 1 / variance - 3;
      return moments;
    }
    const Real drawn = n * (all - n), kinds = k * failures_;
    moments.skewness = (failures_ - k) / all * ((all - 2 * n) / (all - 2)) / std::sqrt(variance);
    const Real excess = (all - 1) * all * all * (all * (all + 1) - 6 * kinds - 6 * drawn) +
                        6 * drawn * kinds * (5 * all - 6);
    moments.kurtosis = 3 + excess / drawn / kinds / (all - 2) / (all - 3);
    return moments;
  }

  // The three binomial distributions may have any probability; the share of the draws makes none
  // of the factors small where the result is not (Loader, 2000).
  Scaled ProbabilityOf(Real k) const override {
    if (draws_ == 0 || draws_ == population_) return {1};
    const Real x = draws_ / population_, y = (population_ - draws_) / population_;
    const Real lambda = (k * population_ - successes_ * draws_) / population_;
    return BinomialTerm(successes_, k, x, y, lambda) *
           BinomialTerm(failures_, draws_ - k, x, y, -lambda) /
           BinomialTerm(population_, draws_, x, y, 0);
  }

 private:
  Real Mean() const { return draws_ * successes_ / population_; }
  Real Variance() const {
    if (population_ == 1) return 0;
    return Mean() * (failures_ / population_) * ((population_ - draws_) / (population_ - 1));
  }
  Start SearchStart() const override { return {Mean(), std::sqrt(Variance())}; }
  Ratio RatioAt(Real k) const override {
    return {(successes_ - k) * (draws_ - k), (k + 1) * (failures_ - draws_ + k + 1)};
  }

  Real draws_;
  Real successes_;
  Real failures_;
  Real population_;
};

/// The moments of a beta-binomial distribution; Johnson, Kemp and Kotz 2005, 6.9.
Moments BetaBinomialMoments(Real n, Real a, Real b) {
  const Real c = a + b, mean = n * a / c, product = a * b;
  const Real variance = mean * (b / c) * ((c + n) / (c + 1));
  Moments moments;
  moments.mean = mean;
  moments.variance = variance;
  if (variance == 0) return moments;
  moments.skewness = (c + 2 * n) / (c + 2) * ((b - a) / c) / std::sqrt(variance);
  const Real sum = c * (c - 1 + 6 * n) + 3 * product * (n - 2) + 6 * n * n -
                   3 * product * n * (6 - n) / c - 18 * product * n * n / (c * c);
  moments.kurtosis = sum / variance * (n + c) / (c + 2) / (c + 3) / (c + n);
  return moments;
}

/// The successes drawn before so many failures. They are at most k if there are enough failures
/// among the first draws, so that the tails are hypergeometric.
class NegativeHypergeometric : public DiscreteDist {
 public:
  NegativeHypergeometric(double failures, double successes, double population)
      : DiscreteDist(0, successes),
        wanted_(failures),
        successes_(successes),
        failures_(population - successes),
        population_(population) {
    RequireAtLeast("population", population, "successes + failures", successes + failures);
  }

  DistLib::Moments Moments() const override {
    DistLib::Moments moments = BetaBinomialMoments(successes_, wanted_, failures_ - wanted_ + 1);
    moments.mode = wanted_ == 1 && failures_ == 1
                       ? std::optional<Real>()
                       : std::floor((successes_ + 1) * ((wanted_ - 1) / (failures_ - 1)));
    moments.discrete_mean = WholeMean(*moments.mean);
    return moments;
  }

 private:
  Start SearchStart() const override { return StartOf(Moments()); }
  /// The failures among so many draws.
  Hypergeometric FailuresAmong(Real draws) const { return {draws, failures_, population_}; }

  Scaled ProbabilityOf(Real k) const override {
    return FailuresAmong(wanted_ + k - 1).ProbabilityOf(wanted_ - 1) *
           ((failures_ - wanted_ + 1) / (population_ - wanted_ - k + 1));
  }
  Real LowerTail(Real k) const override {
    return k == successes_ ? 1 : FailuresAmong(wanted_ + k).UpperTailBeyond(wanted_ - 1);
  }
  Real UpperTailBeyond(Real k) const override {
    return k == successes_ ? 0 : FailuresAmong(wanted_ + k).LowerTail(wanted_ - 1);
  }

  Real wanted_;
  Real successes_;
  Real failures_;
  Real population_;
};

class BetaBinomial : public SummedDist {
 public:
  BetaBinomial(double trials, double a, double b)
      : SummedDist(0, trials), n_(trials), a_(a), b_(b) {}

  DistLib::Moments Moments() const override {
    DistLib::Moments moments = BetaBinomialMoments(n_, a_, b_);
    moments.mode = Mode();
    moments.discrete_mean = WholeMean(*moments.mean);
    return moments;
  }

 private:
  std::optional<Real> Mode() const {
    const Real surplus = a_ + b_ - 2;
    if (surplus > 0) return std::clamp(std::floor((n_ + 1) * ((a_ - 1) / surplus)), 0.0L, n_);
    if (a_ == b_) return {};  // flat, or as high at 0 as at n
    return a_ > b_ ? n_ : 0;
  }
  Start SearchStart() const override { return StartOf(BetaBinomialMoments(n_, a_, b_)); }
  // Given their sum, two negative binomial variables have this distribution, whatever their
  // probability; where the sum has its mean, none of the factors is small unless the result is.
  Scaled ProbabilityOf(Real k) const override {
    if (n_ == 0) return {1};
    const Real c = a_ + b_, x = c / (c + n_), y = n_ / (c + n_);
    const Real lambda = (a_ * (n_ - k) - b_ * k) / (c + n_);
    return NegativeBinomialTerm({a_, k, x, y, lambda}) *
           NegativeBinomialTerm({b_, n_ - k, x, y, -lambda}) /
           NegativeBinomialTerm({c, n_, x, y, 0});
  }
  Ratio RatioAt(Real k) const override {
    return {(n_ - k) * (k + a_), (k + 1) * (n_ - k - 1 + b_)};
  }

  Real n_;
  Real a_;
  Real b_;
};

/// Sums have ten times as many terms as the standard deviation, which is half the root at most.
constexpr Domain kPopulation{
    .low = 1, .high = 1e8, .with_low = true, .with_high = true, .whole = true};
constexpr Domain kMembers{
    .low = 0, .high = 1e8, .with_low = true, .with_high = true, .whole = true};

}  // namespace

const Description kHypergeometric{
    .name = "hypergeometric",
    .other_names = {},
    .parameters = {{"draws", kMembers, {}},
                   {"successes", kMembers, {}},
                   {"population", kPopulation, {}}},
    .kind = Kind::kDiscrete,
    .support = "whole numbers from max(0, draws + successes - population) to min(draws, successes)",
    .formula =
        "f(x) = choose(successes, x) choose(population - successes, draws - x) / "
        "choose(population, draws)",
    .source = "Johnson, Kemp and Kotz 2005, chapter 6",
    .make = Make<Hypergeometric, 3>};

const Description kNegativeHypergeometric{
    .name = "negative hypergeometric",
    .other_names = {},
    .parameters = {{"failures", kPopulation, {}},
                   {"successes", kMembers, {}},
                   {"population", kPopulation, {}}},
    .kind = Kind::kDiscrete,
    .support = "whole numbers from 0 to successes",
    .formula =
        "f(x) = choose(x + failures - 1, x) choose(population - failures - x, successes - x) / "
        "choose(population, successes), the successes drawn before so many failures",
    .source = "Johnson, Kemp and Kotz 2005, 6.2",
    .make = Make<NegativeHypergeometric, 3>};

const Description kBetaBinomial{
    .name = "beta-binomial",
    .other_names = {"Polya-Eggenberger"},
    // A flat distribution needs as many terms as there are trials.
    .parameters = {{"trials",
                    {.low = 0, .high = 5e4, .with_low = true, .with_high = true, .whole = true},
                    {}},
                   {"shape1", kDegrees, {}},
                   {"shape2", kDegrees, {}}},
    .kind = Kind::kDiscrete,
    .support = "whole numbers from 0 to trials",
    .formula =
        "f(x) = choose(trials, x) B(x + shape1, trials - x + shape2) / B(shape1, shape2), B the "
        "beta function",
    .source = "Johnson, Kemp and Kotz 2005, 6.9",
    .make = Make<BetaBinomial, 3>};

}  // namespace DistLib
