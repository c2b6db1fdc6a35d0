#include "stats/autocorrelation.h"

#include <doctest/doctest.h>

#include <limits>
#include <vector>

#include "numbers/error_double.h"

namespace zavrel::tests {

TEST_CASE("autocorrelation at each lag") {
  const std::vector<double> values{1, 2, 3, 4, 5};  // deviations -2 to 2, squares 10
  const double expected[] = {1, 0.4, -0.1, -0.4, -0.4, 0};
  for (std::size_t lag = 0; lag <= values.size(); ++lag)
    CHECK(Autocorrelation(values, lag) == expected[lag]);
  CHECK(HasCondition(Autocorrelation(values, 6), kConditionNotComputed));
  CHECK(HasCondition(Autocorrelation({}, 0), kConditionNotComputed));

  CHECK(HasCondition(Autocorrelation(std::vector<double>{7}, 0), kConditionTooFew));
  // Ten times 0.1 sums to less than 1; that makes no spread.
  CHECK(HasCondition(Autocorrelation(std::vector<double>(10, 0.1), 1), kConditionTooFew));

  const double infinity = std::numeric_limits<double>::infinity();
  CHECK(HasCondition(Autocorrelation(std::vector<double>{1, infinity, 2}, 1), kConditionNotFinite));
  // Deviations and squares beyond a double, and below one.
  CHECK(Autocorrelation(std::vector<double>{-1.7e308, 1.7e308, -1.7e308, 1.7e308}, 1) == -0.75);
  CHECK(Autocorrelation(std::vector<double>{-4e-320, 4e-320, -4e-320, 4e-320}, 2) == 0.5);
}

}  // namespace zavrel::tests
