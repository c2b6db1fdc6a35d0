#include "stats/pairs.h"

#include <doctest/doctest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "stats/standardize.h"

namespace zavrel::tests {
namespace {

using Numbers = std::vector<double>;
constexpr double kLargest = std::numeric_limits<double>::max();
constexpr double kNone = kMissingValue;

Numbers Differences(const Numbers& x, const Numbers& y) {
  Numbers differences(std::min(x.size(), y.size()));
  differences.resize(PairedDifferences(x, y, differences));
  return differences;
}

struct Quotients : PairedQuotientsResult {
  Quotients(const Numbers& x, const Numbers& y, Quotient quotient = Quotient::kPlain)
      : values(std::min(x.size(), y.size())) {
    static_cast<PairedQuotientsResult&>(*this) = PairedQuotients(x, y, quotient, values);
    values.resize(count);
  }
  Numbers values;
};

}  // namespace

TEST_CASE("incomplete pairs are skipped, and the rest stays aligned") {
  const Numbers x{10, kNone, 30, 40, kNone, 60, 70};
  const Numbers y{1, 2, kNone, 4, kNone, 6};
  CHECK(CountPairs(x, y) == 3);
  CHECK(Differences(x, y) == Numbers{9, 36, 54});
  CHECK(Differences(y, x) == Numbers{-9, -36, -54});
  CHECK(Quotients(x, y).values == Numbers{10, 10, 10});
  CHECK(CountPairs(x, {}) == 0);
  CHECK(Differences({kNone}, {1}).empty());
  // Only the marker itself is one.
  CHECK(CountPairs(Numbers{std::nextafter(kNone, 0)}, Numbers{-kNone}) == 1);
}

TEST_CASE("the first pair without a quotient ends the run") {
  const Numbers absolute{2, 0.5, 3};
  CHECK(Quotients({-4, 1, -3}, {2, -2, -1}, Quotient::kAbsolute).values == absolute);
  CHECK(Quotients({1, 2}, {2, 4}).failure == 0);
  CHECK(HasCondition(Quotients({1, 5, 1e300}, {1, -0.0, 1e-300}).failure, kConditionTooFew));
  CHECK(HasCondition(Quotients({1e300, 5}, {-1e-300, 0}).failure, kConditionNotFinite));
  CHECK(HasCondition(Quotients({0}, {0}).failure, kConditionTooFew));
  CHECK(Quotients({kNone, 6}, {0, 3}).values == Numbers{2});  // the zero is in no complete pair
  CHECK(Quotients({1e-300}, {1e300}).values == Numbers{0});   // underflow is no failure
}

TEST_CASE("counts inside bounds") {
  const Numbers x{1, 2, 3, kNone, 5};
  const auto between = [](double low, bool low_too, double high, bool high_too) {
    return NumericRange{Bound{low, low_too}, Bound{high, high_too}};
  };
  const NumericRange everything = between(-kLargest, true, kLargest, true);
  const Numbers zeros(5);
  CHECK(CountPairsInRange(x, zeros, between(2, true, 5, true)) == 3);
  CHECK(CountPairsInRange(x, zeros, between(2, false, 5, true)) == 2);
  CHECK(CountPairsInRange(x, zeros, between(2, false, 5, false)) == 1);
  CHECK(CountPairsInRange(x, zeros, between(5, true, 2, true)) == 0);
  CHECK(CountPairsInRange(x, zeros, everything) == 4);
  CHECK(CountPairsInRange(Numbers{kLargest, kLargest}, Numbers{-kLargest, 0}, everything) == 1);
  CHECK(CountInRange(Numbers{-kLargest, 5, kLargest}, everything) == 3);
  CHECK(CountInRange(Numbers{5, 5}, between(5, false, 5, false)) == 0);
  CHECK(CountInRange(Numbers{5, 5}, between(5, true, 5, true)) == 2);
}

TEST_CASE("standardizing") {
  CHECK(Standardize(5, 3, 4).value == 0.5);
  CHECK(Standardize(5, 3, 4).status == StandardizeStatus::kGiven);
  CHECK(Standardize(5, 3, -4).value == -0.5);
  CHECK(Standardize(5, 3, 0).status == StandardizeStatus::kNoSpread);
  CHECK(std::isinf(Standardize(5, 3, 0).value));
  CHECK(Standardize(kLargest, -kLargest, 0).status == StandardizeStatus::kNoSpread);
  CHECK(Standardize(kLargest, -kLargest, 4).status == StandardizeStatus::kOverflow);
  CHECK(Standardize(1e300, 0, 1e-300).status == StandardizeStatus::kOverflow);
}

}  // namespace zavrel::tests
