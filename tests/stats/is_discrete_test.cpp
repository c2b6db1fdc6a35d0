#include "stats/is_discrete.h"

#include <doctest/doctest.h>

#include <vector>

namespace zavrel::tests {
namespace {

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
