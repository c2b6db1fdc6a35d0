#include "stats/single_statistics.h"

#include <doctest/doctest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "numbers/error_double.h"

namespace zavrel::tests {
namespace {

using Id = StatisticId;

double Of(Id id, const std::vector<double>& values) { return SingleStatistic(id, values); }
doctest::Approx Near(double value, double epsilon = 4e-15) {
  return doctest::Approx(value).epsilon(epsilon).scale(0);
}
bool NotFinite(double value) { return HasCondition(value, kConditionNotFinite); }
bool NotComputed(double value) { return HasCondition(value, kConditionNotComputed); }

}  // namespace

TEST_CASE("each statistic of one series") {
  const std::vector<double> values{2.5, -1.25, 7, 3.75, 0.5, 11, -4, 6.25};
  CHECK(Of(Id::kSum, values) == 25.75);
  CHECK(Of(Id::kProduct, values) == 11279.296875);  // exact in binary
  CHECK(Of(Id::kRange, values) == 15);
  CHECK(Of(Id::kCount, values) == 8);
  CHECK(Of(Id::kAveDev, values) == 3.78125);
  CHECK(Of(Id::kSumSq, values) == 247.1875);
  CHECK(Of(Id::kSumDevSq, values) == 164.3046875);
  CHECK(Of(Id::kMeanAbs, values) == 4.53125);
}

TEST_CASE("no values") {
  CHECK(Of(Id::kSum, {}) == 0);
  CHECK(NotComputed(Of(Id::kProduct, {})));
  CHECK(Of(Id::kRange, {}) == 0);
  CHECK(Of(Id::kCount, {}) == 0);
  CHECK(NotComputed(Of(Id::kAveDev, {})));
  CHECK(Of(Id::kSumSq, {}) == 0);
  CHECK(Of(Id::kSumDevSq, {}) == 0);
  CHECK(NotComputed(Of(Id::kMeanAbs, {})));
}

TEST_CASE("sums run in the order of the values") {
  // Any other order, or pairing, keeps the 1.
  CHECK(Of(Id::kSum, {1e16, 1, -1e16, 1}) == 1);
  CHECK(Of(Id::kSum, {1, 1e16, 1, -1e16, 1, 1, 1, 1}) == 4);
}

TEST_CASE("overflow") {
  CHECK(Of(Id::kSum, {1.5e308, 1.5e308, -1.5e308}) == 1.5e308);
  CHECK(NotFinite(Of(Id::kSum, {1.5e308, 1.5e308})));
  CHECK(Of(Id::kAveDev, {1.5e308, -1.5e308, 1.5e308, -1.5e308}) == 1.5e308);
  CHECK(Of(Id::kMeanAbs, {1.5e308, -1.7e308}) == Near(1.6e308));
  CHECK(Of(Id::kSumDevSq, {1.5e308, 1.5e308}) == 0);  // the mean overflows, the deviations are 0
  CHECK(NotFinite(Of(Id::kSumDevSq, {1e200, -1e200})));
  CHECK(NotFinite(Of(Id::kSumSq, {1e200})));
  CHECK(NotFinite(Of(Id::kRange, {1.5e308, -1.5e308})));
}

TEST_CASE("a product beyond the range of a double") {
  CHECK(Of(Id::kProduct, {1e200, 1e200, 0}) == 0);
  CHECK(Of(Id::kProduct, {0, 1e200, -1e200}) == 0);
  CHECK(Of(Id::kProduct, {1e200, 1e200, 1e-250}) == Near(1e150, 1e-14));
  CHECK(Of(Id::kProduct, {-1e200, 1e200, 1e-250}) == Near(-1e150, 1e-14));
  CHECK(Of(Id::kProduct, {-1e200, -1e200, -2e-250, -1}) == Near(2e150, 1e-14));
  CHECK(NotFinite(Of(Id::kProduct, {1e200, 1e200})));
  CHECK(NotFinite(Of(Id::kProduct, {-1e200, 1e200})));
  CHECK(Of(Id::kProduct, {1e-200, 1e-200}) == 0);
  CHECK(Of(Id::kProduct, {1e-200, 1e-200, -1e250}) == Near(-1e-150, 1e-14));
  CHECK(Of(Id::kProduct, {1e-200, 1e-115, 1e200}) == Near(1e-115, 1e-14));  // subnormal on the way
}

TEST_CASE("subnormal results are kept") {
  const double tiny = std::numeric_limits<double>::denorm_min();
  CHECK(Of(Id::kSum, {tiny, tiny}) == 2 * tiny);
  CHECK(Of(Id::kProduct, {1e-300, 1e-20}) == 1e-320);
}

}  // namespace zavrel::tests
