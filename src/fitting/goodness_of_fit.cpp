#include "fitting/goodness_of_fit.h"

#include <algorithm>
#include <cmath>

#include "distributions/catalogue.h"
#include "fitting/anderson_darling.h"
#include "fitting/kolmogorov.h"
#include "fitting/refit.h"
#include "numbers/floating_point_scope.h"
#include "random/mersenne_twister.h"

namespace DistLib {
namespace {

constexpr double kLeastExpected = 5;

double Lower(const PdfDist& distribution, double x) {
  if (x < distribution.Lowest()) return 0;
  return x >= distribution.Highest() ? 1 : distribution.Cumulative(x);
}
double Upper(const PdfDist& distribution, double x) {
  if (x < distribution.Lowest()) return 1;
  return x >= distribution.Highest() ? 0 : distribution.UpperTail(x);
}

/// A test of one sample size; its statistic is computed for the sample and for replicates.
class Test {
 public:
  Test(FitTest test, const Description& description, std::size_t count)
      : test_(test), kind_(description.kind), count_(static_cast<double>(count)) {
    if (test == FitTest::kAndersonDarling && kind_ == Kind::kDiscrete)
      throw FitError("Anderson-Darling is for continuous distributions, but " + description.name +
                     " is discrete");
    if (test == FitTest::kPearsonChiSquare && count_ < 2 * kLeastExpected)
      throw FitError("chi-square needs at least 10 values, the sample has " +
                     std::to_string(count));
  }

  struct Statistic {
    double value = 0;
    double classes = 0;  // of chi-square
  };
  Statistic Of(const PdfDist& distribution, const Sample& sample) const {
    if (test_ == FitTest::kKolmogorovSmirnov) return {Distance(distribution, sample)};
    if (test_ == FitTest::kAndersonDarling) return {AndersonDarling(distribution, sample)};
    return ChiSquare(distribution, sample);
  }

  double UpperTail(const Statistic& statistic) const {
    const auto count = static_cast<std::size_t>(count_);
    if (test_ == FitTest::kKolmogorovSmirnov) return KolmogorovUpperTail(count, statistic.value);
    if (test_ == FitTest::kAndersonDarling) {
      return statistic.value < kInfinity ? AndersonDarlingUpperTail(count, statistic.value) : 0;
    }
    if (!(statistic.value < kInfinity)) return 0;
    return MakeDistribution(kChiSquare, std::vector{statistic.classes - 1})
        ->UpperTail(statistic.value);
  }

  /// Of a chi-square statistic with so many estimated parameters.
  double DegreesOfFreedom(const Statistic& statistic, int estimated) const {
    if (test_ != FitTest::kPearsonChiSquare) return std::nan("");
    const double degrees = statistic.classes - 1 - estimated;
    if (degrees < 1)
      throw FitError("chi-square has only " + NumberText(statistic.classes) + " classes, for " +
                     std::to_string(estimated) + " estimated parameters");
    return degrees;
  }

 private:
  double Distance(const PdfDist& distribution, const Sample& sample) const {
    double before = 0, distance = 0;
    for (std::size_t i = 0; i < sample.distinct(); ++i) {
      const double x = sample.values()[i], after = before + sample.times()[i];
      const double below = Lower(distribution, kind_ == Kind::kDiscrete ? x - 1 : x);
      distance =
          std::max({distance, after / count_ - Lower(distribution, x), below - before / count_});
      before = after;
    }
    return distance;
  }

  double AndersonDarling(const PdfDist& distribution, const Sample& sample) const {
    // The weights of equal values: sums of 2 i - 1 over their ranks i, from below and from above.
    const auto weight = [](double first, double last) { return last * last - first * first; };
    Real sum = 0;
    double before = 0;
    for (std::size_t i = 0; i < sample.distinct(); ++i) {
      const double x = sample.values()[i], after = before + sample.times()[i];
      sum += weight(before, after) * std::log(Real{Lower(distribution, x)}) +
             weight(count_ - after, count_ - before) * std::log(Real{Upper(distribution, x)});
      before = after;
    }
    return static_cast<double>(-count_ - sum / count_);
  }

  /// Moore 1986 in D'Agostino and Stephens, Goodness-of-Fit Techniques, section 3.2.4, recommends
  /// this number of classes.
  double Classes() const {
    return std::max(std::floor(std::min(2 * std::pow(count_, 0.4), count_ / kLeastExpected)), 2.0);
  }

  Statistic ChiSquare(const PdfDist& distribution, const Sample& sample) const {
    return kind_ == Kind::kDiscrete ? PooledChiSquare(distribution, sample)
                                    : EqualChiSquare(distribution, sample);
  }

  Statistic EqualChiSquare(const PdfDist& distribution, const Sample& sample) const {
    const double classes = Classes();
    std::vector<double> observed(static_cast<std::size_t>(classes));
    for (std::size_t i = 0; i < sample.distinct(); ++i) {
      const double x = sample.values()[i];
      if (x < distribution.Lowest() || x > distribution.Highest()) return {kInfinity, classes};
      const double index = std::min(std::floor(Lower(distribution, x) * classes), classes - 1);
      observed[static_cast<std::size_t>(index)] += sample.times()[i];
    }
    const double expected = count_ / classes;
    double sum = 0;
    for (const double value : observed) sum += (value - expected) * (value - expected) / expected;
    return {sum, classes};
  }

  /// The greatest values of all classes but the last.
  std::vector<double> ClassEnds(const PdfDist& distribution) const {
    const double classes = Classes();
    std::vector<double> ends;
    double reached = 0;
    for (double i = 1; i < classes; ++i) {
      const double end = distribution.Quantile(i / classes);
      if (!ends.empty() && end <= ends.back()) continue;
      const double lower = Lower(distribution, end);
      if (count_ * (lower - reached) < kLeastExpected) continue;
      if (count_ * Upper(distribution, end) < kLeastExpected) break;
      ends.push_back(end);
      reached = lower;
    }
    return ends;
  }

  Statistic PooledChiSquare(const PdfDist& distribution, const Sample& sample) const {
    const std::vector<double> ends = ClassEnds(distribution);
    std::vector<double> observed(ends.size() + 1);
    for (std::size_t i = 0; i < sample.distinct(); ++i) {
      const auto place = std::ranges::lower_bound(ends, sample.values()[i]) - ends.begin();
      observed[static_cast<std::size_t>(place)] += sample.times()[i];
    }
    double sum = 0, reached = 0;
    for (std::size_t i = 0; i < observed.size(); ++i) {
      const double share = i < ends.size() ? Lower(distribution, ends[i]) - reached : 1 - reached;
      const double expected = count_ * share;
      sum += (observed[i] - expected) * (observed[i] - expected) / expected;
      reached += share;
    }
    return {sum, static_cast<double>(observed.size())};
  }

  FitTest test_;
  Kind kind_;
  double count_;
};

/// Draws from a fit, and fits the draws.
class Bootstrap {
 public:
  Bootstrap(const Description& description, const Fit& fit, const PdfDist& fitted,
            FixedParameters fixed, const Cancelled& cancelled, std::uint64_t seed)
      : description_(description),
        fit_(fit),
        fitted_(fitted),
        fixed_(fixed),
        cancelled_(cancelled) {
    const std::uint32_t words[] = {static_cast<std::uint32_t>(seed),
                                   static_cast<std::uint32_t>(seed >> 32)};
    generator_.SeedSequence(words, std::size(words));
  }

  /// The statistic of one more replicate, or nothing if it has no fit.
  std::optional<double> Next(const Test& test) {
    std::vector<double> draws(fit_.count);
    for (double& draw : draws) draw = fitted_.Random(generator_);
    try {
      const Sample sample(draws);
      const auto refit = Refit(description_, sample, fixed_, cancelled_, fit_.parameters);
      if (!refit) return {};
      return test.Of(*MakeDistribution(description_, refit->parameters), sample).value;
    } catch (const FitCancelled&) {
      throw;
    } catch (const std::bad_alloc&) {
      throw;
    } catch (const std::exception&) {
      return {};
    }
  }

 private:
  const Description& description_;
  const Fit& fit_;
  const PdfDist& fitted_;
  FixedParameters fixed_;
  const Cancelled& cancelled_;
  zavrel::MersenneTwister generator_;
};

}  // namespace

FitTestResult TestFit(FitTest kind, const Description& description,
                      std::span<const double> parameters, std::span<const double> values) {
  const zavrel::FloatingPointScope scope;
  const Sample sample(values);
  const auto distribution = MakeDistribution(description, parameters);
  const Test test(kind, description, sample.count());
  const Test::Statistic statistic = test.Of(*distribution, sample);
  const double degrees = test.DegreesOfFreedom(statistic, 0);
  return {statistic.value, test.UpperTail(statistic), degrees};
}

FitTestResult TestFitted(FitTest kind, const Description& description, const Fit& fit,
                         std::span<const double> values, std::uint64_t seed, int replicates,
                         FixedParameters fixed, const Cancelled& cancelled) {
  const zavrel::FloatingPointScope scope;
  if (replicates < 1) throw std::invalid_argument("a bootstrap needs replicates");
  const Sample sample(values);
  const auto distribution = MakeDistribution(description, fit.parameters);
  const Test test(kind, description, sample.count());
  const Test::Statistic statistic = test.Of(*distribution, sample);
  const double degrees = test.DegreesOfFreedom(statistic, fit.free_parameters);
  Bootstrap bootstrap(description, fit, *distribution, fixed, cancelled, seed);
  int fitted = 0, as_great = 0;
  for (int i = 0; i < replicates; ++i) {
    const auto other = bootstrap.Next(test);
    if (!other) continue;
    ++fitted;
    if (*other >= statistic.value) ++as_great;
  }
  if (2 * fitted < replicates)
    throw FitError("only " + std::to_string(fitted) + " of " + std::to_string(replicates) +
                   " samples drawn from the fit could be fitted");
  return {statistic.value, (1.0 + as_great) / (1.0 + fitted), degrees};
}

}  // namespace DistLib
