#include "stats/mode.h"

#include <doctest/doctest.h>

#include <algorithm>
#include <limits>
#include <vector>

#include "numbers/error_double.h"

namespace zavrel::tests {
namespace {

using Values = std::vector<double>;
using enum DiscreteSetting;

constexpr double kInfinity = std::numeric_limits<double>::infinity();

double Continuous(Values values) {
  std::sort(values.begin(), values.end());
  return Mode(values, kContinuous);
}

}  // namespace

TEST_CASE("most frequent value") {
  CHECK(Mode(Values{1, 2, 2, 3, 3}, kDiscrete) == 2);
  CHECK(Mode(Values{1, 2, 2, 3, 3, 3}, kDiscrete) == 3);
  CHECK(Mode(Values{4, 5, 6}, kDiscrete) == 4);
  CHECK(Mode(Values{-0.0, 0.0, 5}, kDiscrete) == 0);
  CHECK(HasCondition(Mode({}, kDiscrete), kConditionNoData));
  CHECK(HasCondition(Mode({}, kUnknown), kConditionNoData));
}

TEST_CASE("unknown data are judged by their ties") {
  CHECK(Mode(Values{1, 2, 4, 9, 9}, kUnknown) == 9);
  CHECK(Mode(Values{1, 2, 4, 9, 9}, kContinuous) == 1.5);  // halves: 1 2 4, then 1 2
  CHECK(Mode(Values{1, 2, 4, 9, 9.5}, kUnknown) == 1.5);
}

TEST_CASE("half-sample mode") {
  CHECK(Continuous({7}) == 7);
  CHECK(Continuous({2, 7}) == 4.5);
  CHECK(Continuous({2, 4, 7}) == 3);
  CHECK(Continuous({2, 5, 7}) == 6);
  CHECK(Continuous({2, 4, 6}) == 4);
  CHECK(Continuous({1, 2, 5, 6}) == 1.5);
  CHECK(Continuous({0, 10, 11, 13, 20}) == 10.5);
  // Of ten the five 20 to 27, of these the three 22 23 24.5, of these the pair 22 23.
  CHECK(Continuous({0, 5, 9, 14, 20, 22, 23, 24.5, 27, 40}) == 22.5);
  CHECK(Continuous(Values(8, 0.1)) == 0.1);
}

TEST_CASE("middle of the fullest bin") {
  // Four bins of width 1; 1 and 2 lie on edges and belong above them.
  CHECK(Continuous({0, 0.25, 0.5, 1, 1.1, 1.5, 1.6, 2, 2.1, 3, 3.5, 4}) == 1.5);
  // The last bin has its upper end too; of two equally full ones the lower counts.
  CHECK(Continuous({0, 0.25, 0.5, 1.1, 1.5, 2.1, 2.2, 2.5, 3, 3.5, 3.7, 4}) == 3.5);
  CHECK(Continuous({0, 0.25, 0.5, 0.75, 1.1, 1.5, 2.1, 2.2, 3, 3.5, 3.7, 4}) == 0.5);
  CHECK(Continuous(Values(30, 0.1)) == 0.1);

  // Eleven values are the first to have bins, three of them.
  CHECK(Continuous({0, 1, 2, 3, 4, 5, 6, 7, 8, 8.5, 9}) == 7.5);

  // Never more than a hundred bins.
  Values many(350, 42.3);
  for (int i = 0; i <= 100; ++i) many.push_back(i);
  CHECK(Continuous(many) == 42.5);
}

TEST_CASE("every edge of 49 bins is found exactly") {
  for (int edge = 0; edge < 49; ++edge) {
    Values values(49, edge);
    for (int i = 0; i < 49; ++i) values.insert(values.end(), {i + 0.0, i + 0.25});
    values[values.size() - 1] = 49;
    CHECK(Continuous(values) == edge + 0.5);
  }
}

TEST_CASE("ranges beyond the largest double and below the smallest normal one") {
  constexpr double kLarge = 1.7e308;
  CHECK(Continuous({-kLarge, -1e308, 1.6e308, kLarge}) == doctest::Approx(1.65e308));
  CHECK(Continuous({-kLarge, -1.6e308, 1e308}) == doctest::Approx(-1.65e308));
  Values values(10, 1.6e308);
  values.insert(values.end(), {-kLarge, 0, kLarge});  // four bins
  CHECK(Continuous(values) == doctest::Approx(1.275e308));
  for (double& x : values) x = x / kLarge * 1e-320;
  CHECK(std::abs(Continuous(values) / 7.5e-321 - 1) < 1e-2);

  CHECK(Continuous({1, 2, 3, kInfinity, kInfinity}) == 2);
  CHECK(HasCondition(Continuous({-kInfinity, kInfinity}), kConditionNotFinite));
  values.push_back(kInfinity);
  CHECK(HasCondition(Continuous(values), kConditionNotFinite));
}

}  // namespace zavrel::tests
