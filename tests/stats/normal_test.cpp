#include "stats/normal.h"

#include <doctest/doctest.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "numbers/elementary.h"
#include "support/csv_lines.h"

namespace zavrel::tests {
namespace {

constexpr double kEpsilon = std::numeric_limits<double>::epsilon();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

}  // namespace

TEST_CASE("tails and quantiles of the normal distribution against 50 digits") {
  int tails = 0;
  int quantiles = 0;
  for (const CsvLine& line : CsvLines("normal.csv")) {
    const double argument = line.numbers[0];
    const double expected = line.numbers[1];
    INFO("kind = ", line.kind, ", argument = ", argument);
    const bool tail = line.kind == 't';
    const double result = tail ? NormalUpperTail(argument) : NormalQuantile(argument);
    CHECK(std::abs(result / expected - 1) < (tail ? 4 : 6) * kEpsilon);
    ++(tail ? tails : quantiles);
  }
  CHECK(tails >= 200);
  CHECK(quantiles >= 150);
}

TEST_CASE("the ends of the normal distribution") {
  CHECK(NormalUpperTail(-kInfinity) == 1);
  CHECK(NormalUpperTail(kInfinity) == 0);
  CHECK(NormalUpperTail(38.4) > 0);  // below the smallest normal number
  CHECK(NormalUpperTail(39) == 0);
  CHECK(std::isnan(NormalUpperTail(std::nan(""))));
  CHECK(NormalQuantile(0) == -kInfinity);
  CHECK(NormalQuantile(1) == kInfinity);
  CHECK(NormalQuantile(0.5) == 0);
  CHECK(NormalQuantile(5e-324) == doctest::Approx(-38.467405617144346).epsilon(1e-14));
  for (const double p : {-1e-300, 1.0000000000000002, std::nan("")})
    CHECK(std::isnan(NormalQuantile(p)));
}

TEST_CASE("exponential and logarithm beside the C library's") {
  for (int i = 0; i < 200'000; ++i) {
    const double x = -707 + i * 0.00707;
    const double y = std::exp(x) * 1.0000003;
    const double f = -0.999 + i * 6.99e-6;
    const bool exponential = std::abs(elementary::Exp(x) / std::exp(x) - 1) < 2 * kEpsilon;
    const bool logarithm = std::abs(elementary::Log(y) - std::log(y)) <
                           2 * kEpsilon * std::max(1.0, std::abs(std::log(y)));
    const bool near_1 = std::abs(elementary::Log1p(f) / std::log1p(f) - 1) < 2 * kEpsilon;
    if (exponential && logarithm && near_1) continue;
    CAPTURE(i);
    CHECK(exponential);
    CHECK(logarithm);
    CHECK(near_1);
  }
  CHECK(elementary::Exp(800) == kInfinity);
  CHECK(elementary::Exp(-800) == 0);
  CHECK(std::abs(elementary::Exp(-740) - std::exp(-740)) <= 5e-324);
  CHECK(elementary::Log(5e-324) == doctest::Approx(-744.4400719213812).epsilon(1e-15));
}

}  // namespace zavrel::tests
