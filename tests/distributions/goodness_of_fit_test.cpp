// Tests of goodness of fit against R's, recorded by data/make_fits.R, and by simulation.
#include "fitting/goodness_of_fit.h"

#include <doctest/doctest.h>

#include <cmath>

#include "fitting/anderson_darling.h"
#include "fitting/kolmogorov.h"
#include "distributions/samples.h"
#include "numbers/floating_point_scope.h"

namespace zavrel::tests {
namespace {

using DistLib::FindDistribution;
using DistLib::Fit;
using DistLib::FitTest;
using DistLib::FitTestResult;
using DistLib::KolmogorovUpperTail;
using Values = std::vector<double>;

constexpr FitTest kTests[] = {FitTest::kKolmogorovSmirnov, FitTest::kAndersonDarling,
                              FitTest::kPearsonChiSquare};

FitTestResult Tested(FitTest test, const char* name, const Values& parameters,
                     const Values& sample) {
  return DistLib::TestFit(test, *FindDistribution(name), parameters, sample);
}

}  // namespace

TEST_CASE("statistics and p-values agree with R's") {
  for (const RecordedTest& recorded : RecordedTests()) {
    INFO(recorded.kind, ", ", recorded.sample, ", ", recorded.distribution);
    const FitTest test = recorded.kind == 'k'   ? FitTest::kKolmogorovSmirnov
                         : recorded.kind == 'a' ? FitTest::kAndersonDarling
                                                : FitTest::kPearsonChiSquare;
    const FitTestResult result = Tested(test, recorded.distribution.c_str(), recorded.parameters,
                                        SampleNamed(recorded.sample));
    CHECK(result.statistic == doctest::Approx(recorded.statistic).epsilon(1e-12));
    // R's own limit is computed to five decimals only, its difference from 1 to fifteen.
    const double decimals = test == FitTest::kAndersonDarling ? 2.5e-5 : 1e-13;
    CHECK(std::fabs(result.p_value - recorded.p_value) <= decimals + 1e-10 * recorded.p_value);
    CHECK(std::isnan(result.degrees_of_freedom) == (test != FitTest::kPearsonChiSquare));
  }
}

TEST_CASE("the Anderson-Darling tail agrees with goftest's") {
  for (const RecordedTail& tail : RecordedTails()) {
    INFO(tail.count, ", ", tail.statistic);
    const double p =
        DistLib::AndersonDarlingUpperTail(static_cast<std::size_t>(tail.count), tail.statistic);
    CHECK(std::fabs(p - tail.p_value) <= (tail.count > 1e6 ? 1e-8 : 2.5e-5));
  }
}

TEST_CASE("Kolmogorov's tail") {
  // Exact for few values: n = 1 and 2 by hand, 1 - n! (2 d - 1 / n)^n where d is at most 1 / n.
  CHECK(KolmogorovUpperTail(1, 0.75) == doctest::Approx(0.5).epsilon(1e-15));
  CHECK(KolmogorovUpperTail(2, 0.4) == doctest::Approx(1 - 2 * 0.3 * 0.3).epsilon(1e-15));
  CHECK(KolmogorovUpperTail(5, 0.15) == doctest::Approx(1 - 120 * std::pow(0.1, 5)).epsilon(1e-15));
  // Twice the one-sided tail where both sides cannot be that far: 2 (1 - d)^n.
  CHECK(KolmogorovUpperTail(7, 0.9) == doctest::Approx(2e-7).epsilon(1e-12));
  CHECK(KolmogorovUpperTail(3, 0) == 1);
  CHECK(KolmogorovUpperTail(3, 1) == 0);
  // Neighbouring methods meet: at n d^2 = 4, and between 500 values and 501.
  for (const std::size_t n : {20u, 300u, 2000u}) {
    const double d = std::sqrt(4.0 / static_cast<double>(n));
    CHECK(KolmogorovUpperTail(n, d * (1 - 1e-12)) ==
          doctest::Approx(KolmogorovUpperTail(n, d * (1 + 1e-12))).epsilon(2e-6));
  }
  for (const double z : {0.5, 0.8, 1.2, 1.8}) {
    CHECK(KolmogorovUpperTail(500, z / std::sqrt(500.0)) ==
          doctest::Approx(KolmogorovUpperTail(501, z / std::sqrt(501.0))).epsilon(2e-4));
  }
  // Kolmogorov's limit: 2 sum (-1)^(k - 1) exp(-2 k^2 z^2).
  CHECK(KolmogorovUpperTail(100000000, 1.36e-4) == doctest::Approx(0.0494859).epsilon(2e-4));
}

TEST_CASE("p-values of a known distribution are uniform, of discrete ones they are bounds") {
  const FloatingPointScope scope;
  MersenneTwister generator(11);
  const auto share = [&](FitTest test, const char* name, const Values& parameters) {
    constexpr int kSamples = 600;
    const auto distribution = DistLib::MakeDistribution(*FindDistribution(name), parameters);
    int rejected = 0;
    for (int i = 0; i < kSamples; ++i) {
      if (Tested(test, name, parameters, Draws(*distribution, 80, generator)).p_value <= 0.2)
        ++rejected;
    }
    return static_cast<double>(rejected) / kSamples;
  };
  // The standard deviation of a share is 0.016.
  for (const FitTest test : kTests)
    CHECK(share(test, "gamma", {2, 3}) == doctest::Approx(0.2).epsilon(0.3));
  CHECK(share(FitTest::kPearsonChiSquare, "Poisson", {3}) == doctest::Approx(0.2).epsilon(0.3));
  CHECK(share(FitTest::kKolmogorovSmirnov, "Poisson", {3}) < 0.2);
}

TEST_CASE("the bootstrap takes the estimation into account") {
  const DistLib::Description& normal = *FindDistribution("normal");
  const Values& wind = SampleNamed("wind");
  const Fit fit = DistLib::FitDistribution(normal, wind);
  const auto bootstrap = [&](FitTest test, std::uint64_t seed) {
    return DistLib::TestFitted(test, normal, fit, wind, seed, 200).p_value;
  };
  // Stephens's formula gives 0.054 for this statistic: D'Agostino and Stephens 1986, table 4.9.
  const double p = bootstrap(FitTest::kAndersonDarling, 1);
  CHECK(std::fabs(p - 0.054) < 0.045);
  CHECK(p == bootstrap(FitTest::kAndersonDarling, 1));
  CHECK(p != bootstrap(FitTest::kAndersonDarling, 2));
  // In Lilliefors's table this distance, 0.082, is between the limits for 5 % and 1 %.
  CHECK(bootstrap(FitTest::kKolmogorovSmirnov, 3) < 0.05);
  const FitTestResult chi_square =
      DistLib::TestFitted(FitTest::kPearsonChiSquare, normal, fit, wind, 1, 50);
  CHECK(chi_square.degrees_of_freedom == 11);  // 14 classes
  // Everything fixed: nothing is estimated, and the p-value is that of a known distribution.
  const std::vector<std::optional<double>> fixed = {10.2, 3.3};
  const Fit known = DistLib::FitDistribution(normal, wind, fixed);
  const double exact = Tested(FitTest::kKolmogorovSmirnov, "normal", {10.2, 3.3}, wind).p_value;
  CHECK(DistLib::TestFitted(FitTest::kKolmogorovSmirnov, normal, known, wind, 1, 1000, fixed)
            .p_value == doctest::Approx(exact).epsilon(0.3));
}

TEST_CASE("samples outside the support are rejected, impossible tests refused") {
  const Values sample = {-1, 1, 2, 3, 4, 5, 6, 7, 8, 9};
  for (const FitTest test : kTests) CHECK(Tested(test, "exponential", {0.2}, sample).p_value < 1);
  CHECK(Tested(FitTest::kAndersonDarling, "exponential", {0.2}, sample).statistic ==
        DistLib::kInfinity);
  CHECK(Tested(FitTest::kAndersonDarling, "exponential", {0.2}, sample).p_value == 0);
  CHECK_THROWS_AS(Tested(FitTest::kAndersonDarling, "Poisson", {3}, sample), DistLib::FitError);
  CHECK_THROWS_AS(Tested(FitTest::kPearsonChiSquare, "normal", {3, 1}, {1, 2, 3}),
                  DistLib::FitError);
  CHECK_THROWS_AS(Tested(FitTest::kKolmogorovSmirnov, "normal", {3, 1}, {}), DistLib::FitError);
  CHECK_THROWS_AS(Tested(FitTest::kKolmogorovSmirnov, "normal", {3, -1}, sample),
                  DistLib::ParameterError);
}

}  // namespace zavrel::tests
