#include "numbers/floating_point_scope.h"

#include <doctest/doctest.h>

#include <vector>

#include "stats/moment_block.h"
#include "stats/single_statistics.h"
#include "support/foreign_environment.h"

namespace zavrel::tests {

TEST_CASE("results do not depend on the environment, which is left as it was") {
  const std::vector<double> values{0.1, 0.2, 0.4, 1e-310};
  const std::vector<double> huge{1e160, 2e160, 4e160, 8e160};
  const double sum = SingleStatistic(StatisticId::kSum, values);
  const MomentBlock moments = ComputeMoments(huge, Form::kSample);
  double foreign_sum = 0;
  double foreign_tiny = 0;
  MomentBlock foreign;
  bool left_alone = false;
  {
    const ForeignEnvironment environment;
    foreign_sum = SingleStatistic(StatisticId::kSum, values);
    foreign_tiny = SingleStatistic(StatisticId::kSum, std::vector<double>{1e-310, 1e-310});
    foreign = ComputeMoments(huge, Form::kSample);
    left_alone = ForeignEnvironment::Stands();
  }
  CHECK(foreign_sum == sum);
  CHECK(foreign_tiny == 2e-310);
  CHECK(SingleStatistic(StatisticId::kProduct, std::vector<double>{1e-300, 1e-20}) == 1e-320);
  CHECK(foreign.standard_deviation == moments.standard_deviation);
  CHECK(foreign.kurtosis == moments.kurtosis);
  CHECK(left_alone);
}

TEST_CASE("an overflow is seen wherever it happens, and only then") {
  std::vector<double> values{1e300, 1e10};
  {
    const FloatingPointScope scope;
    CHECK_FALSE(scope.Overflowed());
    CHECK(Settled(values[0] * values[1]) > 0);
    CHECK(scope.Overflowed());
  }
  {
    const FloatingPointScope scope;
    CHECK_FALSE(scope.Overflowed());
    const long double wide = Settled(static_cast<long double>(values[0]) * values[1]);
    CHECK_FALSE(scope.Overflowed());
    CHECK(Settled(static_cast<double>(wide)) > 0);
    CHECK(scope.Overflowed());
  }
}

TEST_CASE("long double has 64 bits of significand even in a process that starts with 53") {
  const FloatingPointScope scope;
  const volatile long double one = 1;
  const volatile long double small = 0x1p-63L;
  CHECK(one + small > one);
}

}  // namespace zavrel::tests
