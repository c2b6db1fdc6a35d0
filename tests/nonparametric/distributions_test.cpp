// The exact distributions against plain counting, their properties, and what nobody should pass.
#include <doctest/doctest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

#include "nonparametric/library.h"
#include "support/foreign_environment.h"

namespace zavrel::tests {
namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

/// One of the two statistics: its p-values, and the range that it lies in.
struct Statistic {
  std::int32_t n1;
  std::int32_t n2;  // 0: signed ranks

  double least() const { return n2 > 0 ? n1 * (n1 + 1.0) / 2 : 0; }
  double greatest() const { return n2 > 0 ? least() + n1 * n2 : n1 * (n1 + 1.0) / 2; }
  double P(double statistic, std::int32_t alternative) const {
    return n2 > 0 ? library.MWpValue(n1, n2, statistic, alternative)
                  : library.WSRpValue(n1, statistic, alternative);
  }
};

/// A group's values.
using Group = std::vector<double>;

std::int16_t Ask(decltype(&::KWData) function, std::int32_t item, const std::vector<Group>& groups,
                 double& result) {
  std::vector<const double*> values;
  std::vector<std::int32_t> counts;
  for (const Group& group : groups) {
    values.push_back(group.data());
    counts.push_back(static_cast<std::int32_t>(group.size()));
  }
  return function(item, static_cast<std::int32_t>(groups.size()), values.data(), counts.data(),
                  &result);
}
double Value(decltype(&::KWData) function, std::int32_t item, const std::vector<Group>& groups) {
  double result = kNaN;
  CHECK(Ask(function, item, groups, result) == EUTILITY_OK);
  return result;
}

}  // namespace

TEST_CASE("tails are monotone, mirror each other and sum to one") {
  for (const Statistic& of : {Statistic{50, 50},
                              {3, 833},
                              {25, 100},
                              {51, 50},
                              {40, 90},
                              {30, 0},
                              {200, 0},
                              {1000, 0},
                              {1001, 0}}) {
    INFO("n1 = ", of.n1, ", n2 = ", of.n2);
    const bool exact = of.n2 == 0 ? of.n1 <= library.WSRExactPValMaxSample()
                                  : library.MWUsingNormalApproximation(of.n1, of.n2) == 0;
    const double step =
        std::max(1.0, std::floor((of.greatest() - of.least()) / (of.n1 < 1000 ? 40 : 5)));
    double before = 0;
    for (double statistic = of.least(); statistic <= of.greatest(); statistic += step) {
      const double less = of.P(statistic, NPT_LESS);
      const double greater = of.P(statistic, NPT_GREATER);
      CHECK(less > 0);
      CHECK(less <= 1);
      CHECK(less >= before);
      before = less;
      CHECK(of.P(of.greatest() - (statistic - of.least()), NPT_GREATER) == less);
      CHECK(of.P(statistic, NPT_TWO_SIDED) == std::min(1.0, 2 * std::min(less, greater)));
      if (statistic < of.greatest())
        CHECK(less + of.P(statistic + 1, NPT_GREATER) == doctest::Approx(1).epsilon(1e-15));
      // A statistic between two whole numbers lies between two counts.
      if (exact && statistic < of.greatest()) CHECK(of.P(statistic + 0.5, NPT_LESS) == less);
    }
  }
}

TEST_CASE("where the exact p-values end") {
  CHECK(library.WSRExactPValMaxSample() == 1000);
  for (const auto& [n1, n2, approximate] : {std::array{1, 1, 0},
                                            {50, 50, 0},
                                            {50, 51, 1},
                                            {2500, 1, 0},
                                            {1, 2501, 1},
                                            {2147483647, 2147483647, 1},
                                            {0, 5000, 0},
                                            {-2000, -2000, 0}}) {
    CHECK(library.MWUsingNormalApproximation(n1, n2) == approximate);
  }
  // The two ways meet: far from the tails they differ by little.
  for (const Statistic& exact : {Statistic{50, 50}, {1000, 0}}) {
    const Statistic beyond{exact.n1 + 1, exact.n2};
    for (const double part : {0.4, 0.45, 0.5, 0.55}) {
      const auto at = [&](const Statistic& of) {
        return of.P(std::floor(of.least() + part * (of.greatest() - of.least())), NPT_LESS);
      };
      CHECK(std::abs(at(exact) - at(beyond)) < 0.02);
    }
  }
}

TEST_CASE("whatever is passed, a p-value is a probability or not a number") {
  const std::int32_t wholes[] = {-2147483647 - 1, -1, 0, 1, 2, 50, 1000, 1001, 2147483647};
  const double statistics[] = {kNaN, -kInfinity, kInfinity, -0.5, 0, 0.5, 1, 3, 1e6, 1e18, 1e300};
  for (const std::int32_t n1 : wholes) {
    for (const std::int32_t n2 : wholes) {
      for (const double statistic : statistics) {
        INFO("n1 = ", n1, ", n2 = ", n2, ", statistic = ", statistic);
        const double p = library.MWpValue(n1, n2, statistic, NPT_TWO_SIDED);
        const double least = n1 * (n1 + 1.0) / 2, span = static_cast<double>(n1) * n2;
        const bool possible = n1 >= 1 && n2 >= 1 && statistic >= least && statistic <= least + span;
        CHECK((possible ? p >= 0 && p <= 1 : std::isnan(p)));
      }
    }
    for (const double statistic : statistics) {
      const double p = library.WSRpValue(n1, statistic, NPT_GREATER);
      const bool possible = n1 >= 1 && statistic >= 0 && statistic <= n1 * (n1 + 1.0) / 2;
      CHECK((possible ? p >= 0 && p <= 1 : std::isnan(p)));
    }
    if (n1 < -1 || n1 > 1) {
      CHECK(std::isnan(library.MWpValue(3, 3, 10, n1)));
      CHECK(std::isnan(library.WSRpValue(3, 3, n1)));
    }
  }
}

TEST_CASE("a statistic that rounding left beside a multiple of one half counts as that multiple") {
  const volatile double eleven = 11;
  const double fifteen = 15 / eleven * eleven;  // a unit in the last place short of 15
  REQUIRE(fifteen < 15);
  for (const Statistic& of : {Statistic{11, 0}, {5, 5}, {2000, 0}, {60, 60}}) {
    INFO("n1 = ", of.n1, ", n2 = ", of.n2);
    for (const double whole : {of.least(), of.least() + 15, of.greatest()}) {
      for (const std::int32_t alternative : {NPT_LESS, NPT_TWO_SIDED, NPT_GREATER}) {
        const double p = of.P(whole, alternative);
        for (const double statistic : {whole - 15 + fifteen, whole - 9e-8, whole + 9e-8})
          CHECK(of.P(statistic, alternative) == p);
      }
    }
    // A distance that no rounding explains counts.
    const double middle = std::floor((of.least() + of.greatest()) / 2);
    CHECK(of.P(middle - 2e-7, NPT_LESS) < of.P(middle, NPT_LESS));
    CHECK(std::isnan(of.P(of.least() - 2e-7, NPT_LESS)));
    CHECK(std::isnan(of.P(of.greatest() + 2e-7, NPT_LESS)));
  }
}

TEST_CASE("rank sums, and samples that are refused") {
  const double x[] = {kInfinity, 0.0, -3, 5e-324};
  const double y[] = {-0.0, 4};
  NptRankSums sums{};
  CHECK(library.MWTiesAndSums(x, 4, y, 2, &sums) == NPT_OK);
  CHECK(sums.ties == 1);
  CHECK(sums.tie_correction_term == 6);
  CHECK(sums.rank_sum_1 == 13.5);
  CHECK(sums.rank_sum_2 == 7.5);
  CHECK(library.WSRTiesAndSums(y, 2, 0, &sums) == NPT_OK);
  CHECK(sums.rank_sum_1 == 0);
  CHECK(sums.rank_sum_2 == 1);
  CHECK(library.WSRTiesAndSums(y, 1, 0, &sums) == NPT_OK);  // nothing but zeros
  CHECK(sums.rank_sum_2 == 0);

  const double gap[] = {1, kNaN};
  const NptRankSums kept = sums = {1, 2, 3, 4};
  for (const std::int16_t code :
       {library.MWTiesAndSums(nullptr, 4, y, 2, &sums), library.MWTiesAndSums(x, 0, y, 2, &sums),
        library.MWTiesAndSums(x, 4, y, -1, &sums), library.MWTiesAndSums(x, 4, gap, 2, &sums),
        library.MWTiesAndSums(x, 4, y, 2, nullptr), library.WSRTiesAndSums(gap, 2, 0, &sums),
        library.WSRTiesAndSums(y, 2, kNaN, &sums), library.WSRTiesAndSums(nullptr, 2, 0, &sums),
        library.WSRTiesAndSums(y, 2, 0, nullptr)})
    CHECK(code == NPT_REFUSED);
  CHECK(sums.rank_sum_2 == kept.rank_sum_2);
}

TEST_CASE("with two groups the exact p-value is that of Mann and Whitney") {
  std::mt19937 random(7);
  for (const auto& [n1, n2] : {std::pair{1, 1}, {4, 6}, {9, 8}, {2, 300}}) {
    std::vector<Group> groups{Group(static_cast<std::size_t>(n1)),
                              Group(static_cast<std::size_t>(n2))};
    for (Group& group : groups)
      for (double& value : group) value = std::ldexp(static_cast<double>(random()), -32);
    CAPTURE(n1);
    CHECK(Value(library.KWpValue, KW_AUTOMATIC, groups) ==
          doctest::Approx(library.MWpValue(n1, n2, Value(library.KWData, 101, groups), 0))
              .epsilon(1e-14)
              .scale(0));
    CHECK(Value(library.KWData, 101, groups) + Value(library.KWData, 102, groups) ==
          (n1 + n2) * (n1 + n2 + 1) / 2);
    std::swap(groups[0], groups[1]);
    CHECK(Value(library.KWpValue, KW_EXACT, groups) ==
          doctest::Approx(library.MWpValue(n2, n1, Value(library.KWData, 101, groups), 0))
              .epsilon(1e-14)
              .scale(0));
  }
}

TEST_CASE("items, methods and limits of Kruskal and Wallis") {
  const std::vector<Group> groups = {{1, 2, 2}, {2, 5}, {7, 5, 9, 1}};
  const auto item = [&](std::int32_t which) { return Value(library.KWData, which, groups); };
  for (const auto& [which, value] : {std::pair<std::int32_t, double>{KW_DEGREES_OF_FREEDOM, 2},
                                     {KW_TOTAL, 9},
                                     {KW_TIES, 3},
                                     {101, 9.5},
                                     {102, 10.5},
                                     {103, 25}})
    CHECK(item(which) == value);
  CHECK(item(KW_TIE_DIVISOR) == doctest::Approx(1 - 36.0 / 720));
  CHECK(item(KW_STATISTIC) * item(KW_TIE_DIVISOR) ==
        doctest::Approx(item(KW_STATISTIC_UNCORRECTED)));

  double result = -1;
  const std::vector<Group> equal = {{3, 3}, {3}};
  CHECK(Ask(library.KWData, KW_STATISTIC, equal, result) == EUTILITY_NO_SPREAD);
  CHECK(Value(library.KWData, KW_TIE_DIVISOR, equal) == 0);
  const std::vector<Group> many(4, Group{1, 2, 3, 4, 5, 6});
  for (const std::int32_t method : {KW_AUTOMATIC, KW_CHI_SQUARE, KW_EXACT}) {
    CHECK(Ask(library.KWpValue, method, equal, result) == EUTILITY_NO_SPREAD);
    CHECK(Ask(library.KWpValue, method, many, result) ==
          (method == KW_EXACT ? EUTILITY_TOO_MANY : EUTILITY_OK));
  }
  result = -1;
  for (const std::int32_t wrong : {-1, 6, 100, 104, 2147483647, -2147483647})
    CHECK(Ask(library.KWData, wrong, groups, result) == EUTILITY_REFUSED);
  for (const std::int32_t wrong : {-1, 3})
    CHECK(Ask(library.KWpValue, wrong, groups, result) == EUTILITY_REFUSED);
  for (const std::vector<Group>& refused :
       {std::vector<Group>{{1, 2}}, {{1, 2}, {}}, {{1, 2}, {kNaN}}, {}})
    CHECK(Ask(library.KWData, KW_TOTAL, refused, result) == EUTILITY_REFUSED);
  CHECK(library.KWData(KW_TOTAL, 2, nullptr, nullptr, &result) == EUTILITY_REFUSED);
  CHECK(result == -1);

  const auto method = [](std::vector<std::int32_t> sizes) {
    return library.KWpValueComputationMethod(static_cast<std::int32_t>(sizes.size()), sizes.data());
  };
  for (const auto& [sizes, expected] :
       {std::pair<std::vector<std::int32_t>, int>{{6, 6, 6}, KW_EXACT},
        {{7, 6, 6}, KW_CHI_SQUARE},
        {{1, 999}, KW_EXACT},
        {{1, 1000}, KW_CHI_SQUARE},
        {{5}, 0},
        {{5, 0}, 0}})
    CHECK(method(sizes) == expected);
  CHECK(method(std::vector<std::int32_t>(10, 1)) == KW_EXACT);
  CHECK(method(std::vector<std::int32_t>(5000, 2147483647)) == KW_CHI_SQUARE);
  CHECK(library.KWpValueComputationMethod(2, nullptr) == 0);
}

TEST_CASE("the caller's floating-point mode changes nothing and is left alone") {
  const std::vector<Group> groups = {{1, 2, 2}, {2, 5}, {7, 5, 9, 1}};
  // Of each kind: counted, by the recurrence, approximated, by chi-square; and ranks.
  const auto all = [&] {
    double statistic = kNaN, chi_square = kNaN, exact = kNaN;
    Ask(library.KWData, KW_STATISTIC, groups, statistic);
    Ask(library.KWpValue, KW_CHI_SQUARE, groups, chi_square);
    Ask(library.KWpValue, KW_EXACT, groups, exact);
    NptRankSums sums{};
    library.WSRTiesAndSums(groups[2].data(), 4, 4.9, &sums);
    return std::array{library.MWpValue(20, 30, 401, 0),
                      library.WSRpValue(30, 100, 0),
                      library.WSRpValue(1000, 2, 0),
                      library.MWpValue(60, 70, 3333.3, 0),
                      library.WSRpValue(1001, 220000, -1),
                      statistic,
                      chi_square,
                      exact,
                      sums.rank_sum_1,
                      sums.rank_sum_2};
  };
  const std::array before = all();
  // 24 bits downwards; and what MXCSR rules: upwards, subnormals flushed to zero and read as zero.
  auto again = before;
  again.fill(kNaN);
  bool left_alone = false;
  {
    const ForeignEnvironment environment(0xDFC0, 0x047F);
    again = all();
    left_alone = ForeignEnvironment::Stands(0xDFC0, 0x047F);
  }
  CHECK(left_alone);
  CHECK(again == before);
}

}  // namespace zavrel::tests
