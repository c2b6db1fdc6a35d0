// What holds for every distribution of the list.
#include <doctest/doctest.h>

#include <algorithm>
#include <cmath>

#include "distributions/recorded.h"
#include "numbers/floating_point_scope.h"
#include "random/mersenne_twister.h"

namespace zavrel::tests {
namespace {

using DistLib::PdfDist;
constexpr double kEpsilon = std::numeric_limits<double>::epsilon();

/// A moment is right, or the distribution says that it has none.
void CheckMoment(const char* name, const std::optional<DistLib::Real>& moment, double expected) {
  if (!moment) return;
  INFO(name);
  CHECK(static_cast<double>(*moment) == doctest::Approx(expected).epsilon(1e-9));
}

/// No neighbour of the mode has a greater density.
void CheckMode(const PdfDist& distribution, double mode) {
  const double step = (distribution.Quantile(0.51) - distribution.Quantile(0.49)) / 100;
  for (const double other : {mode - step, mode + step}) {
    if (other < distribution.Lowest() || other > distribution.Highest()) continue;
    if (mode == distribution.Lowest() || mode == distribution.Highest()) continue;
    CHECK(distribution.Density(mode) >= distribution.Density(other) * (1 - 1e-9));
  }
}

/// A probability, half of them far out.
double Probability(RndGen& generator) {
  const double u = generator.NextDouble();
  return generator.NextDouble() < 0.5 ? std::max(u, 1e-9) : std::exp(-690 * u);
}

void CheckTails(const PdfDist& distribution, double x) {
  const double lower = distribution.Cumulative(x), upper = distribution.UpperTail(x);
  CHECK(std::fabs(lower + upper - 1) <= 8 * kEpsilon);
}

/// The tail at the quantile is the probability, as far as the quantile's rounding lets it be.
void CheckInverse(const PdfDist& distribution, bool upper, double p) {
  const double x = upper ? distribution.UpperQuantile(p) : distribution.Quantile(p);
  if (!(std::fabs(x) > 1e-290 && std::fabs(x) < 1e290)) return;
  if (x <= distribution.Lowest() || x >= distribution.Highest()) return;
  INFO("p = ", p, ", upper = ", upper, ", x = ", x);
  const double back = upper ? distribution.UpperTail(x) : distribution.Cumulative(x);
  // The density itself may be too small for a double.
  const double condition =
      std::exp(std::log(std::fabs(x)) + distribution.LogDensity(x) - std::log(p));
  CHECK(std::fabs(back - p) <= p * (16 + 2 * condition) * kEpsilon);
  CheckTails(distribution, x);
}

/// A discrete quantile is the first value to reach the probability.
void CheckFirst(const PdfDist& distribution, bool upper, double p) {
  const double x = upper ? distribution.UpperQuantile(p) : distribution.Quantile(p);
  const auto reached = [&](double k) {
    return upper ? distribution.UpperTail(k) <= p : distribution.Cumulative(k) >= p;
  };
  INFO("p = ", p, ", upper = ", upper, ", x = ", x);
  if (std::isinf(x)) return;
  CHECK(reached(x));
  if (x > distribution.Lowest() && x < 0x1p53) CHECK(!reached(x - 1));
  CheckTails(distribution, x);
}

/// Kolmogorov's distance of a sample stays below what one in a thousand million exceeds.
void CheckRandom(const PdfDist& distribution, RndGen& generator) {
  constexpr std::size_t kDraws = 2000;
  std::vector<double> draws(kDraws);
  for (double& draw : draws) draw = distribution.Random(generator);
  std::ranges::sort(draws);
  double distance = 0;
  for (std::size_t i = 0; i < kDraws; ++i) {
    if (i + 1 < kDraws && draws[i + 1] == draws[i]) continue;
    if (!std::isfinite(draws[i])) continue;
    distance = std::max(distance, std::fabs(distribution.Cumulative(draws[i]) -
                                            static_cast<double>(i + 1) / kDraws));
  }
  CHECK(distance * std::sqrt(double{kDraws}) < 3.3);
}

}  // namespace

TEST_CASE("moments, entropy, median and mode") {
  const FloatingPointScope scope;
  for (const Recorded& recorded : AllRecorded()) {
    INFO(recorded.Text());
    const auto distribution = recorded.Make();
    const DistLib::Moments moments = distribution->Moments();
    if (moments.mode) CheckMode(*distribution, static_cast<double>(*moments.mode));
    if (recorded.moments.empty()) continue;
    CheckMoment("mean", moments.mean, recorded.moments[0]);
    CheckMoment("variance", moments.variance, recorded.moments[1]);
    if (std::fabs(recorded.moments[2]) > 1e-8)
      CheckMoment("skewness", moments.skewness, recorded.moments[2]);
    CheckMoment("kurtosis", moments.kurtosis, recorded.moments[3]);
    CHECK(moments.kurtosis.has_value());
    CheckMoment("entropy", distribution->Entropy(), recorded.moments[4]);
    CheckMoment("median", distribution->Median(), recorded.moments[5]);
  }
}

TEST_CASE("quantiles invert the tails, which sum to one; random values follow them") {
  const FloatingPointScope scope;
  MersenneTwister generator;
  generator.Seed(20261125);
  for (const Recorded& recorded : AllRecorded()) {
    INFO(recorded.Text());
    const auto distribution = recorded.Make();
    const auto check =
        recorded.description->kind == DistLib::Kind::kDiscrete ? CheckFirst : CheckInverse;
    for (int i = 0; i < 40; ++i) {
      const double p = Probability(generator);
      check(*distribution, false, p);
      check(*distribution, true, p);
    }
    if (!recorded.moments.empty()) CheckRandom(*distribution, generator);
  }
}

TEST_CASE("distributions are found by any of their names and describe themselves in full") {
  for (const DistLib::Description* description : DistLib::Distributions()) {
    INFO(description->name);
    CHECK(DistLib::FindDistribution(description->name) == description);
    for (const std::string& other : description->other_names)
      CHECK(DistLib::FindDistribution(other) == description);
    CHECK(!description->parameters.empty());
    CHECK(!description->formula.empty());
    CHECK(!description->support.empty());
    CHECK(!description->source.empty());
  }
  CHECK(DistLib::FindDistribution("HALF normal") == DistLib::FindDistribution("half-normal"));
  CHECK(DistLib::FindDistribution("half") == nullptr);
  CHECK(std::ranges::is_sorted(DistLib::Distributions(), {}, [](const auto* description) {
    std::string name = description->name;
    for (char& c : name) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return name;
  }));
}

TEST_CASE("nothing is below an end of the support that is too small for a double") {
  const FloatingPointScope scope;
  const auto distribution = DistLib::MakeDistribution(*DistLib::FindDistribution("log-Pearson III"),
                                                      std::vector{0.2890625, 29024.0, -14159.0});
  CHECK(distribution->Cumulative(0) == 0);
  CHECK(distribution->UpperTail(0) == 1);
}

TEST_CASE("what is computed on the way may be beyond all numbers, though the result is not") {
  const FloatingPointScope scope;
  struct Far {
    const char* name;
    std::vector<double> parameters;
    double x;
    double cumulative;
    double density;
  };
  // From the first term of the series; of Burr III the end of the formula.
  const double gamma = std::tgamma(1.0001);
  const Far far[] = {
      {"error", {0, 1, 1e4}, 0.5, 0.5 + 0.25 / gamma, 0.5 / gamma},
      {"error", {0, 1, 1e4}, -0.5, 0.5 - 0.25 / gamma, 0.5 / gamma},
      {"log-gamma", {1e-4}, -20000, std::exp(-2) / gamma, 1e-4 * std::exp(-2) / gamma},
      {"generalised gamma", {1e-4, 100}, 1e-100, 0.1 / gamma, 1e-2 * 0.1e100 / gamma},
      {"Burr III", {1000, 1e-4}, 1e-30, 1e-3, 0.1 * 1e-3 * 1e30}};
  for (const Far& one : far) {
    INFO(one.name);
    const auto distribution =
        DistLib::MakeDistribution(*DistLib::FindDistribution(one.name), one.parameters);
    CHECK(distribution->Cumulative(one.x) == doctest::Approx(one.cumulative).epsilon(1e-13));
    CHECK(distribution->UpperTail(one.x) == doctest::Approx(1 - one.cumulative).epsilon(1e-13));
    CHECK(distribution->Density(one.x) == doctest::Approx(one.density).epsilon(1e-12));
    CHECK(distribution->Quantile(one.cumulative) == doctest::Approx(one.x).epsilon(1e-11));
    CHECK(distribution->UpperQuantile(1 - one.cumulative) == doctest::Approx(one.x).epsilon(1e-10));
  }
  const auto beyond = DistLib::MakeDistribution(*DistLib::FindDistribution("noncentral F"),
                                                std::vector{2.0, 1e-250});
  CHECK(!std::isfinite(beyond->Quantile(0.1)));
}

TEST_CASE("errors name the parameter and its domain") {
  const auto error = [](const char* name, std::vector<double> parameters) -> std::string {
    try {
      DistLib::MakeDistribution(*DistLib::FindDistribution(name), parameters);
    } catch (const std::logic_error& failure) {
      return failure.what();
    }
    return "";
  };
  CHECK(error("Weibull", {-2}) == "shape must be greater than 0, is -2");
  CHECK(error("Weibull", {}) == "shape is missing");
  CHECK(error("Weibull", {1, 2, 3}) == "Weibull has only 2 parameters");
  CHECK(error("binomial", {2.5, 0.5}) ==
        "trials must be a whole number at least 0 and at most 2147483647, is 2.5");
  CHECK(error("binomial", {3, 1.5}) == "probability must be at least 0 and at most 1, is 1.5");
  CHECK(error("hypergeometric", {3, 5, 4}) == "population must be at least successes (5), is 4");
  CHECK(error("uniform", {2, 1}) == "upper must be greater than lower (2), is 1");
  CHECK(error("Cauchy", {std::nan("")}) == "location must be a number, is nan");
}

}  // namespace zavrel::tests
