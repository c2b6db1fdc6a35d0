// Distributions of counts. Names without a point are those of older versions.

#include <cmath>

#include "host/formula/builtin_groups.h"
#include "host/formula/number_function.h"
#include "host/formula/probability_masses.h"
#include "host/formula/special_functions.h"

namespace zavhost {
namespace {

bool IsProbability(double p) { return p >= 0.0 && p <= 1.0; }

/// The binomial probabilities of at most k and of more successes.
double BinomialUpTo(double k, double n, double p) {
  if (k < 0.0) return 0.0;
  return k >= n ? 1.0 : special::BetaIComplement(k + 1.0, n - k, p);
}
double BinomialAbove(double k, double n, double p) {
  if (k < 0.0) return 1.0;
  return k >= n ? 0.0 : special::BetaI(k + 1.0, n - k, p);
}

double Binomial(Whole k, Whole n, double p, bool is_cumulative) {
  if (k < 0.0 || k > n || !IsProbability(p)) return kNum;
  return is_cumulative ? BinomialUpTo(k, n, p) : BinomialMass(k, n, p);
}

/// The probability of `from` to `to` successes, by the tails on the side where they are small.
double BinomialBetween(double n, double p, double from, double to) {
  if (from < 0.0 || to < from || to > n || !IsProbability(p)) return kNum;
  if (from == to) return BinomialMass(from, n, p);
  return from > n * p ? BinomialAbove(from - 1.0, n, p) - BinomialAbove(to, n, p)
                      : BinomialUpTo(to, n, p) - BinomialUpTo(from - 1.0, n, p);
}
double BinomialRange(Whole n, double p, Whole from, Whole to) {
  return BinomialBetween(n, p, from, to);
}
double BinomialSingle(Whole n, double p, Whole k) { return BinomialBetween(n, p, k, k); }
Operand BinomDistRange(const BuiltInCall& call) {
  return call.arguments.size() == 3 ? Of<BinomialSingle>(call) : Of<BinomialRange>(call);
}

/// The smallest number of successes that reaches a probability, by bisection.
double BinomialInverse(Whole n, double p, double alpha) {
  if (n < 0.0 || !IsProbability(p) || !IsProbability(alpha)) return kNum;
  if (std::isnan(BinomialUpTo(0.0, n, p))) return kNum;
  const auto is_reached = [=](double k) {
    return alpha < 0.5 ? BinomialUpTo(k, n, p) >= alpha : BinomialAbove(k, n, p) <= 1.0 - alpha;
  };
  double below = -1.0;
  double reached = n;
  while (reached - below > 1.0) {
    const double middle = std::floor(below + (reached - below) / 2.0);
    (is_reached(middle) ? reached : below) = middle;
  }
  return reached;
}

double NegativeBinomial(Whole failures, Whole successes, double p, bool is_cumulative) {
  if (failures < 0.0 || successes < 1.0 || !IsProbability(p)) return kNum;
  if (is_cumulative) return special::BetaI(successes, failures + 1.0, p);
  const double trials = successes + failures;
  return successes / trials * BinomialMass(successes, trials, p);
}
double NegativeBinomialMass(Whole failures, Whole successes, double p) {
  return NegativeBinomial(failures, successes, p, false);
}

double Poisson(Whole k, double mean, bool is_cumulative) {
  if (k < 0.0 || mean < 0.0) return kNum;
  return is_cumulative ? special::GammaQ(k + 1.0, mean) : PoissonMass(k, mean);
}

/// Drawing a sample without replacement.
struct Drawing {
  double sample;
  double successes;
  double population;

  double failures() const { return population - successes; }
  double least() const { return std::fmax(0.0, sample - failures()); }
  double most() const { return std::fmin(sample, successes); }

  /// From three binomial probabilities, which the choice of p makes large (Loader, 2000).
  double Mass(double k) const {
    if (k < least() || k > most()) return 0.0;
    const double p = sample / population;
    return BinomialMass(k, successes, p) * BinomialMass(sample - k, failures(), p) /
           BinomialMass(sample, population, p);
  }
  /// The ratio of the probabilities of k + 1 and k.
  double Ratio(double k) const {
    return (successes - k) / (k + 1.0) * ((sample - k) / (failures() - sample + k + 1.0));
  }

  /// The sum down to the least number, or from k + 1 up if that tail is the smaller one. The terms
  /// fall like those of a normal distribution.
  double UpTo(double k) const {
    const double mean = sample * (successes / population);
    return k < mean ? TailDown(k) : 1.0 - TailUp(k + 1.0);
  }
  double TailDown(double k) const {
    double term = Mass(k);
    double sum = term;
    for (; k > least() && term > kNegligible * sum; k -= 1.0) {
      term /= Ratio(k - 1.0);
      sum += term;
    }
    return sum;
  }
  double TailUp(double k) const {
    double term = Mass(k);
    double sum = term;
    for (; k < most() && term > kNegligible * sum; k += 1.0) {
      term *= Ratio(k);
      sum += term;
    }
    return sum;
  }

  static constexpr double kNegligible = 1e-18;
};

double Hypergeometric(Whole k, Whole sample, Whole successes, Whole population,
                      bool is_cumulative) {
  constexpr double kLargestPopulation = 2147483647.0;  // keeps the sums short
  if (population <= 0.0 || population > kLargestPopulation) return kNum;
  if (sample <= 0.0 || sample > population || successes <= 0.0 || successes > population)
    return kNum;
  const Drawing drawing{sample, successes, population};
  if (k < drawing.least() || k > drawing.most()) return kNum;
  return is_cumulative ? drawing.UpTo(k) : drawing.Mass(k);
}
double HypergeometricMass(Whole k, Whole sample, Whole successes, Whole population) {
  return Hypergeometric(k, sample, successes, population, false);
}

constexpr BuiltInFunction kFunctions[] = {
    {u"BINOM.DIST", 4, 4, "s", Of<Binomial>},
    {u"BINOMDIST", 4, 4, "s", Of<Binomial>},
    {u"BINOM.DIST.RANGE", 3, 4, "s", BinomDistRange},
    {u"BINOM.INV", 3, 3, "s", Of<BinomialInverse>},
    {u"CRITBINOM", 3, 3, "s", Of<BinomialInverse>},
    {u"NEGBINOM.DIST", 4, 4, "s", Of<NegativeBinomial>},
    {u"NEGBINOMDIST", 3, 3, "s", Of<NegativeBinomialMass>},
    {u"POISSON.DIST", 3, 3, "s", Of<Poisson>},
    {u"POISSON", 3, 3, "s", Of<Poisson>},
    {u"HYPGEOM.DIST", 5, 5, "s", Of<Hypergeometric>},
    {u"HYPGEOMDIST", 4, 4, "s", Of<HypergeometricMass>},
};

}  // namespace

std::span<const BuiltInFunction> DiscreteDistributionFunctions() { return kFunctions; }

}  // namespace zavhost
