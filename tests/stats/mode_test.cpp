// The mode, and the data that count as discrete.
#include "stats/mode.h"

#include <doctest/doctest.h>

#include <algorithm>
#include <limits>
#include <vector>

#include "numbers/error_double.h"
#include "stats/is_discrete.h"

namespace zavrel::tests {
namespace {

using Values = std::vector<double>;
using enum DiscreteSetting;

constexpr double kInfinity = std::numeric_limits<double>::infinity();

double Continuous(Values values) {
  std::sort(values.begin(), values.end());
  return Mode(values, kContinuous);
}

/// n values in ascending order, `ties` of them equal to their predecessor.
std::vector<double> WithTies(std::size_t n, std::size_t ties) {
  std::vector<double> values(n);
  for (std::size_t i = 1; i < n; ++i) values[i] = values[i - 1] + (i <= ties ? 0 : 0.5);
  return values;
}

bool Discrete(std::size_t n, std::size_t ties) {
  const IsDiscrete result(WithTies(n, ties));
  CHECK(result.forMode == result.forPercentile);
  return result.forMode;
}

}  // namespace

TEST_CASE("bins of many values, of equal ones, and no values") {
  CHECK(HasCondition(Mode({}, kDiscrete), kConditionNoData));
  CHECK(HasCondition(Mode({}, kUnknown), kConditionNoData));
  CHECK(Mode(Values{-0.0, 0.0, 5}, kDiscrete) == 0);
  CHECK(Continuous(Values(30, 0.1)) == 0.1);
  Values many(350, 42.3);  // never more than a hundred bins
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

TEST_CASE("ties needed at each size") {
  struct {
    std::size_t n, enough;
  } const sizes[] = {{2, 1},         {999, 1},        {1000, 1},       {1999, 1},
                     {2000, 2},      {9999, 5},       {10000, 34},     {99999, 334},
                     {100000, 2501}, {999999, 25000}, {1000000, 50001}};
  for (const auto& [n, enough] : sizes) {
    CAPTURE(n);
    CHECK(Discrete(n, enough));
    CHECK_FALSE(Discrete(n, enough - 1));
  }
}

TEST_CASE("graphs want many ties, and text") {
  CHECK(IsDiscrete({}).Text() == "IsDiscrete forGraphing=T, forMode=T, forPercentile=T");
  CHECK(IsDiscrete(WithTies(1, 0)).Text() ==
        "IsDiscrete forGraphing=F, forMode=F, forPercentile=F");
  CHECK(IsDiscrete(WithTies(1000, 1)).Text() ==
        "IsDiscrete forGraphing=F, forMode=T, forPercentile=T");
  CHECK(IsDiscrete(WithTies(19, 1)).forGraphing);
  CHECK_FALSE(IsDiscrete(WithTies(20, 9)).forGraphing);
  CHECK(IsDiscrete(WithTies(20, 10)).forGraphing);
  CHECK(IsDiscrete(WithTies(21, 11)).forGraphing);
  CHECK_FALSE(IsDiscrete(WithTies(21, 10)).forGraphing);
}

}  // namespace zavrel::tests
