#include "stats/studentized_range.h"

#include <doctest/doctest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <tuple>

#include "support/csv_lines.h"

namespace zavrel::tests {
namespace {

std::int32_t Whole(double number) { return static_cast<std::int32_t>(number); }

}  // namespace

TEST_CASE("probabilities as a second program of the algorithm has them, and their quantiles") {
  int probabilities = 0, quantiles = 0;
  for (const CsvLine& line : CsvLines("studentized_range.csv")) {
    const double q = line.numbers[0], p = line.numbers[3];
    const std::int32_t df = Whole(line.numbers[1]), means = Whole(line.numbers[2]);
    INFO("q = ", q, ", df = ", df, ", means = ", means);
    const StudentizedRangeResult result = StudentizedRangeProbability(q, df, means);
    CHECK(!result.failed);
    // A small q is lost in the deviates that it is subtracted from.
    const double limit = std::max(1e-12, 1e-15 / q);
    CHECK(std::abs(result.value - p) <= (p > 1e-100 ? limit * p : 1e-100));
    ++probabilities;
    if (p < 0.01 || p > 0.999) continue;
    CHECK(!StudentizedRangeQuantile(p, df, means).failed);
    CHECK(std::abs(StudentizedRangeQuantile(p, df, means).value / q - 1) <= 1e-9);
    ++quantiles;
  }
  CHECK(probabilities >= 340);
  CHECK(quantiles >= 150);
}

TEST_CASE("the algorithm's distance from a fine double integral is what is said of it") {
  // As docs/accuracy.md, the header and the function's help have it.
  const auto stated = [](double df, double means) {
    const bool many = means > 20;
    if (df == 1) return many ? 2e-2 : 3e-3;
    if (df <= 120) return many ? 7e-3 : 1e-3;
    return many ? 4e-2 : 2e-2;
  };
  int lines = 0;
  for (const CsvLine& line : CsvLines("studentized_range_distance.csv")) {
    const double q = line.numbers[0], df = line.numbers[1], means = line.numbers[2];
    const double exact = line.numbers[3], distance = line.numbers[4];
    INFO("q = ", q, ", df = ", df, ", means = ", means);
    const double off =
        std::abs(StudentizedRangeProbability(q, Whole(df), Whole(means)).value - exact);
    CHECK(off <= stated(df, means));
    CHECK(std::abs(off - distance) <= 1e-7);
    ++lines;
  }
  CHECK(lines >= 50);
}

TEST_CASE("the algorithm's distance from published tables") {
  // Upper points, E. S. Pearson and H. O. Hartley, "Biometrika Tables for Statisticians" I,
  // table 29.
  for (const auto& [p, df, means, q] : {std::tuple{0.95, 10, 3, 3.88},
                                        {0.95, 60, 10, 4.65},
                                        {0.99, 5, 4, 7.80},
                                        {0.95, 3, 2, 4.5}}) {
    CAPTURE(q);
    CHECK(StudentizedRangeQuantile(p, df, means).value == doctest::Approx(q).epsilon(4e-3));
    CHECK(std::abs(StudentizedRangeProbability(q, df, means).value - p) < 1e-3);
  }
}

TEST_CASE("arguments of the studentized range without a probability or a quantile") {
  constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();
  for (const auto& [df, means] : {std::pair{0, 3}, {-5, 3}, {5, 1}, {5, 0}, {-kMost, -kMost}}) {
    CHECK(StudentizedRangeProbability(3, df, means).failed);
    CHECK(StudentizedRangeProbability(-3, df, means).failed);
    CHECK(StudentizedRangeQuantile(0.5, df, means).failed);
    CHECK(!StudentizedRangeQuantile(0, df, means).failed);
  }
  for (const double q : {0.0, -1.0, -1e308}) {
    CHECK(StudentizedRangeProbability(q, 5, 3).value == 0);
    CHECK(!StudentizedRangeProbability(q, 5, 3).failed);
  }
  for (const double p : {-0.1, 1.0, 1.5, 1e300}) {
    CHECK(StudentizedRangeQuantile(p, 5, 3).failed);
    CHECK(StudentizedRangeQuantile(p, 5, 3).value == 0);
  }
  // Whatever comes, an answer, after at most the widenings and bisections that there are.
  for (const double extreme : {5e-324, 1e-300, 1e-17, 0.5, 0.99, 1 - 1e-10, 1 - 1.2e-16}) {
    for (const std::int32_t df : {1, 2, 119, 120, 121, kMost}) {
      for (const std::int32_t means : {2, 3, 100, kMost}) {
        CAPTURE(extreme);
        const StudentizedRangeResult quantile = StudentizedRangeQuantile(extreme, df, means);
        CHECK(std::isfinite(quantile.value));
        CHECK(quantile.value >= 0);
        CHECK(quantile.evaluations <= 502);
        if (!quantile.failed) {
          const double back = StudentizedRangeProbability(quantile.value, df, means).value;
          CHECK(std::abs(back / extreme - 1) <= 1.01e-4);
        }
        CHECK(std::isfinite(StudentizedRangeProbability(1 / extreme, df, means).value));
      }
    }
  }
}

}  // namespace zavrel::tests
