#include "stats/target.h"

#include <doctest/doctest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <random>
#include <vector>

#include "diagnostics/vek_exception.h"
#include "numbers/error_double.h"
#include "support/csv_lines.h"

namespace zavrel::tests {
namespace {

using Values = std::vector<double>;
using enum DiscreteSetting;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr int kMethods = 6;

double Percentile(const Values& sorted, double p, int method, DiscreteSetting setting = kUnknown) {
  return Stats::Target(sorted, Stats::Direction::kProbabilityToValue, method, setting, p);
}

double Fraction(const Values& sorted, double v, DiscreteSetting setting) {
  return Stats::Target(sorted, Stats::Direction::kValueToFraction, 0, setting, v);
}

/// 1, 2, ..., n: a value is its own rank.
Values Ranks(int n) {
  Values values(static_cast<std::size_t>(n));
  std::iota(values.begin(), values.end(), 1.0);
  return values;
}

/// The doubles next to p and what is left of p within a rounding, inside 0..1.
Values HairAround(double p) {
  Values around{p,
                p - 1e-16,
                p + 1e-16,
                p * (1 + 1e-16),
                p * (1 - 1e-16),
                std::nextafter(p, 0.0),
                std::nextafter(p, 1.0)};
  std::erase_if(around, [](double x) { return x < 0 || x > 1; });
  return around;
}

}  // namespace

TEST_CASE("the definitions as R computes them") {
  int probes = 0;
  Values sorted;
  for (const auto& [kind, texts, probe] : CsvLines("quantiles.csv")) {
    if (kind == 'x') {
      sorted = probe;
      continue;
    }
    for (int method = 0; method < kMethods; ++method) {
      INFO("sorted.size() = ", sorted.size(), ", method = ", method, ", probe[0] = ", probe[0]);
      const double expected = probe[static_cast<std::size_t>(method) + 1];
      CHECK(Percentile(sorted, probe[0], method) ==
            doctest::Approx(expected).epsilon(1e-14).scale(1));
    }
    ++probes;
  }
  CHECK(probes > 250);
}

TEST_CASE("a probability as good as k/n counts as k/n") {
  for (const int n : {1, 2, 3, 7, 10, 29, 100, 997, 1000}) {
    const Values x = Ranks(n);
    for (int k = 0; k <= n; ++k) {
      const double rank = std::max(k, 1);
      const double jump = k == 0 || k == n ? rank : k + 0.5;
      for (const double p : HairAround(static_cast<double>(k) / n)) {
        INFO("n = ", n, ", k = ", k);
        CHECK(Percentile(x, p, 2) == rank);
        CHECK(Percentile(x, p, 3) == rank);
        CHECK(Percentile(x, p, 5) == jump);
        CHECK(Percentile(x, p, 1) == doctest::Approx(rank).epsilon(1e-12));
      }
      if (k == n) continue;
      // In the middle the nearest rank is the even one.
      for (const double p : HairAround((k + 0.5) / n))
        CHECK(Percentile(x, p, 2) == std::max(k + k % 2, 1));
      // And what is a little more than a hair off is off.
      const double beyond = static_cast<double>(k) / n + 1e-12;
      CHECK(Percentile(x, beyond, 3) == k + 1);
      CHECK(Percentile(x, beyond, 5) == k + 1);
    }
  }
}

TEST_CASE("the automatic choice of a definition") {
  // Definition 1 for discrete data, 4 for continuous: 1 1 2 5 at 0.6 is x(3), or x(2) + 0.4.
  CHECK(Percentile({1, 1, 2, 5}, 0.6, -1) == 2);
  CHECK(Percentile({1, 1, 2, 5}, 0.6, -1, kContinuous) == doctest::Approx(1.4));
  CHECK(Percentile({0, 1, 2, 5}, 0.6, -1) == doctest::Approx(1.4));
  CHECK(Percentile({0, 1, 2, 5}, 0.6, -1, kDiscrete) == 2);
}

TEST_CASE("results lie within the data and rise with p") {
  std::mt19937_64 random(7);
  for (const std::size_t n : std::initializer_list<std::size_t>{2, 3, 10, 101}) {
    Values x(n);
    for (double& value : x) value = static_cast<double>(random() % 50) / 10;
    std::sort(x.begin(), x.end());
    for (int method = 0; method < kMethods; ++method) {
      double previous = x.front();
      for (int i = 0; i <= 3000; ++i) {
        const double value = Percentile(x, i / 3000.0, method);
        CHECK(value >= previous * (1 - 1e-15));
        CHECK(value <= x.back());
        previous = value;
      }
    }
  }
}

TEST_CASE("between equal, infinite and largest values") {
  const Values equal(7, 0.1);
  for (int method = 0; method < kMethods; ++method) {
    for (int i = 0; i <= 100; ++i) CHECK(Percentile(equal, i / 100.0, method) == 0.1);
  }
  const Values infinite{-kInfinity, 5, kInfinity, kInfinity};
  CHECK(Percentile(infinite, 0.5, 1) == 5);  // on a rank: the neighbour takes no part
  CHECK(Percentile(infinite, 0.9, 0) == kInfinity);
  CHECK(Fraction(infinite, -1e300, kContinuous) == 0.25);
  CHECK(Fraction(infinite, 6, kContinuous) == 0.5);
  CHECK(Fraction(infinite, kInfinity, kContinuous) == 1);
  const Values largest{-1.7e308, 1.6e308, 1.7e308, 1.7e308};
  CHECK(Percentile(largest, 1.0 / 6, 0) == doctest::Approx(-0.05e308));
  CHECK(Percentile(largest, 0.5, 5) == doctest::Approx(1.65e308));
  CHECK(Fraction(largest, -0.05e308, kContinuous) == doctest::Approx(0.375));
}

TEST_CASE("fraction of the data at or below a value") {
  const Values x{1, 2, 2, 4, 8};
  CHECK(Fraction(x, 0.5, kDiscrete) == 0);
  CHECK(Fraction(x, 1, kDiscrete) == 0.2);
  CHECK(Fraction(x, 2, kDiscrete) == 0.6);
  CHECK(Fraction(x, 3, kDiscrete) == 0.6);
  CHECK(Fraction(x, 3, kContinuous) == doctest::Approx(0.7));
  CHECK(Fraction(x, 3, kUnknown) == 0.6);
  CHECK(Fraction({1, 2, 3, 4, 8}, 6, kUnknown) == doctest::Approx(0.9));
  CHECK(Fraction(x, 8, kContinuous) == 1);
  CHECK(Fraction({3}, 3, kContinuous) == 1);
  CHECK(Fraction({3}, 2.9, kContinuous) == 0);

  // For continuous data it undoes definition 4.
  std::mt19937_64 random(8);
  std::uniform_real_distribution<double> uniform;
  Values sorted(40);
  for (double& value : sorted) value = uniform(random);
  std::sort(sorted.begin(), sorted.end());
  for (int i = 0; i < 200; ++i) {
    const double p = 1.0 / 40 + uniform(random) * 39.0 / 40;
    CHECK(Fraction(sorted, Percentile(sorted, p, 1), kContinuous) == doctest::Approx(p));
  }
}

TEST_CASE("what is no probability, method or data") {
  const Values x{1, 2, 3};
  for (const double p : {-1e-300, 1 + 1e-15, kInfinity, -kInfinity})
    CHECK_THROWS_AS(Percentile(x, p, 0), VekInvalidP);
  for (const int method : {-2, 6, 1 << 30})
    CHECK_THROWS_AS(Percentile(x, 0.5, method), VekInvalidPercentileMethod);
  CHECK_THROWS_AS(Percentile(x, 2, 6), VekInvalidP);
  const double condition = ConditionDouble(kConditionTooFew);
  CHECK(HasCondition(Percentile(x, condition, 6), kConditionTooFew));
  CHECK(HasCondition(Fraction({}, condition, kUnknown), kConditionTooFew));
  CHECK(HasCondition(Percentile({}, 0.5, 0), kConditionNotComputed));
  CHECK(HasCondition(Fraction({}, 0.5, kUnknown), kConditionNotComputed));
  CHECK(Stats::Target(x, Stats::Direction::kValueToFraction, 99, kDiscrete, 2) == 2.0 / 3);
}

// The sanitizers judge; what comes out is one of the values or nothing in particular.
TEST_CASE("series in no order do no harm") {
  std::mt19937_64 random(9);
  for (int round = 0; round < 2000; ++round) {
    Values x(1 + random() % 6);
    for (double& value : x)
      value = random() % 4 == 0 ? ConditionDouble(-9) : static_cast<double>(random() % 100);
    const double p = static_cast<double>(random() % 1001) / 1000;
    const double v = static_cast<double>(random() % 120) - 10;
    for (int method = -1; method < kMethods; ++method) Percentile(x, p, method);
    for (const auto setting : {kUnknown, kContinuous, kDiscrete}) {
      const double fraction = Fraction(x, v, setting);
      CHECK(fraction >= 0);
      CHECK(fraction <= 1);
    }
  }
}

}  // namespace zavrel::tests
