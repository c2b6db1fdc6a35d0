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

}  // namespace zavrel::tests
