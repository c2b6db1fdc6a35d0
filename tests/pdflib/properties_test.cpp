// What holds for every parameter and argument, at random ones. ZAVREL_TEST_POINTS in the
// environment asks for another number of them; `./dev test-million` does.
#include <doctest/doctest.h>

#include <cmath>
#include <cstdlib>
#include <random>
#include <tuple>

#include "pdflib/library.h"

namespace zavrel::tests {
namespace {

int Points() {
  const char* const asked = std::getenv("ZAVREL_TEST_POINTS");
  return asked != nullptr ? static_cast<int>(std::strtol(asked, nullptr, 10)) : 3000;
}

class Random {
 public:
  double Uniform(double low, double high) {
    return std::uniform_real_distribution<double>(low, high)(engine_);
  }
  double Magnitude(double low, double high) {
    return std::exp(Uniform(std::log(low), std::log(high)));
  }
  /// Half of them far out.
  double Probability() { return Uniform(0, 1) < 0.5 ? Uniform(1e-9, 1) : Magnitude(1e-300, 1); }
  double Df() { return std::floor(Magnitude(1, 1.0001e6)); }

  Distribution Parameters(const std::string& name) {
    if (name == "normal") return {name, Uniform(-10, 10), Magnitude(1e-6, 1e6)};
    if (name == "f") return {name, Df(), Df()};
    if (name == "binomial") {
      const double p = Uniform(0, 1) < 0.5 ? Uniform(1e-9, 1) : Magnitude(1e-9, 1);
      return {name, std::floor(Magnitude(1, 1.0001e6)), p};
    }
    return {name, Df()};
  }

 private:
  std::mt19937_64 engine_{20261125};
};

/// The quantile, or the largest double when it lies beyond.
double QuantileWithin(const Distribution& distribution, bool upper, double p) {
  const Reply reply = Ask(distribution, upper ? PDFLIB_UPPER_QUANTILE : PDFLIB_QUANTILE, p);
  if (reply.code == PDFLIB_OK) return reply.results[0];
  CHECK(reply.code == PDFLIB_NO_VALUE);
  constexpr double kLargest = std::numeric_limits<double>::max();
  CHECK(Value(distribution, PDFLIB_UPPER_TAIL, kLargest) > (upper ? p : 1 - p));
  return kLargest;
}

double SomeValue(Random& random, const Distribution& distribution) {
  return QuantileWithin(distribution, random.Uniform(0, 1) < 0.5, random.Probability());
}

void TailsSumToOneAndRise(Random& random, const Distribution& distribution) {
  double low = SomeValue(random, distribution), high = SomeValue(random, distribution);
  if (low > high) std::swap(low, high);
  const double below_low = Value(distribution, PDFLIB_CUMULATIVE, low);
  const double below_high = Value(distribution, PDFLIB_CUMULATIVE, high);
  const double above_low = Value(distribution, PDFLIB_UPPER_TAIL, low);
  const double above_high = Value(distribution, PDFLIB_UPPER_TAIL, high);
  INFO("low = ", low, ", high = ", high);
  // Neighbours may be told apart by nothing but rounding.
  constexpr double kRounding = 1 + 8 * kEpsilon;
  CHECK(below_low <= below_high * kRounding);
  CHECK(above_high <= above_low * kRounding);
  CHECK(std::fabs(below_low + above_low - 1) <= 4 * kEpsilon);
  CHECK(std::fabs(below_high + above_high - 1) <= 4 * kEpsilon);
  if (low > 0) CHECK(Value(distribution, PDFLIB_DENSITY, low) >= 0);  // without bound at 0
}

/// The tail at the quantile is the probability again, as far as the quantile's rounding lets it be.
void QuantileInverts(Random& random, const Distribution& distribution, bool upper) {
  const double p = random.Probability();
  const int tail = upper ? PDFLIB_UPPER_TAIL : PDFLIB_CUMULATIVE;
  const double x = QuantileWithin(distribution, upper, p);
  INFO("p = ", p, ", upper = ", upper);
  if (distribution.from_zero()) CHECK(x >= 0);
  const double back = Value(distribution, tail, x);
  if (distribution.discrete()) {
    const auto reached = [&](double probability) {
      return upper ? probability <= p : probability >= p;
    };
    CHECK(reached(back));
    if (x > 0) CHECK(!reached(Value(distribution, tail, x - 1)));
    return;
  }
  if (!(std::fabs(x) > 1e-290 && std::fabs(x) < 1e308)) return;  // at the ends of the doubles
  const double density = Value(distribution, PDFLIB_DENSITY, x);
  const double condition = std::fabs(x) * density / p;
  CHECK(std::fabs(back - p) <= p * (8 + 2 * condition) * kEpsilon);
}

}  // namespace

TEST_CASE("tails rise, fall and sum to one; quantiles invert them") {
  Random random;
  const int points = Points();
  REQUIRE(points > 0);
  for (const char* name : {"normal", "student", "chisq", "f", "binomial"}) {
    for (int i = 0; i < points; ++i) {
      const Distribution distribution = random.Parameters(name);
      INFO("name = ", distribution.name, ", a = ", distribution.a, ", b = ", distribution.b);
      TailsSumToOneAndRise(random, distribution);
      QuantileInverts(random, distribution, false);
      QuantileInverts(random, distribution, true);
    }
  }
}

TEST_CASE("quantiles whose search begins where nothing is left of the tail") {
  for (const auto& [df1, df2, p] : {std::tuple{532.0, 1.0, 5.35862e-275},
                                    {483748.0, 7.0, 6.58404e-210},
                                    {10000.0, 5.0, 1e-300}}) {
    const Distribution distribution{"f", df1, df2};
    const Reply x = Ask(distribution, PDFLIB_QUANTILE, p);
    CHECK(x.code == PDFLIB_OK);
    const double back = Value(distribution, PDFLIB_CUMULATIVE, x.results[0]);
    CHECK(std::fabs(back / p - 1) <= 1e-12);
  }
}

}  // namespace zavrel::tests
