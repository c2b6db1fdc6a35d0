#include "stats/sort_ascending.h"

#include <doctest/doctest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <functional>
#include <limits>
#include <random>
#include <vector>

#include "support/each_target.h"

namespace zavrel::tests {
namespace {

using Values = std::vector<double>;
using Limits = std::numeric_limits<double>;

Values Generated(std::size_t n, const std::function<double()>& next) {
  Values values(n);
  std::generate(values.begin(), values.end(), next);
  return values;
}

std::vector<std::uint64_t> Bits(const Values& values) {
  std::vector<std::uint64_t> bits;
  for (const double x : values) bits.push_back(std::bit_cast<std::uint64_t>(x));
  return bits;
}

Values Sorted(Values values) {
  SortAscending(values);
  return values;
}

/// Places n / 2 - 2 to n / 2 + 1, or all of a short series.
Values MiddleOf(const Values& values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  return values.size() < 4 ? values : Values(middle - 2, middle + 2);
}

Values SortedMiddle(Values values) {
  Values scratch(values.size());  // not one more: the sanitizer watches its end
  SortMiddle(values, scratch);
  return MiddleOf(values);
}

/// For values without a not-a-number.
void CheckAgainstLibrary(const Values& values) {
  Values expected = values;
  std::sort(expected.begin(), expected.end(), [](double a, double b) {
    return a != b ? a < b : std::signbit(a) && !std::signbit(b);
  });
  EachTarget([&] { CHECK(Bits(Sorted(values)) == Bits(expected)); });
  CHECK(Bits(SortedMiddle(values)) == Bits(MiddleOf(expected)));
}

}  // namespace

TEST_CASE("series of all kinds and lengths") {
  std::mt19937_64 random(5);
  std::normal_distribution<double> normal;
  const std::function<double()> kinds[] = {
      [&] { return normal(random); },
      [&] { return 1e9 + normal(random); },
      [&] { return std::round(normal(random) * 3); },  // ties, zeros of both signs among them
      [&] { return static_cast<double>(random() % 100000) / 8; },
      [&] { return normal(random) * 1e-310; },  // subnormal
      [&] { return normal(random) > 0 ? 2.5 : -2.5; },
      [&] { return std::ldexp(normal(random), static_cast<int>(random() % 2000) - 1000); },
  };
  for (const std::size_t n :
       std::initializer_list<std::size_t>{0, 1, 2, 3, 17, 255, 256, 257, 1000, 20000}) {
    for (const auto& kind : kinds) {
      Values values = Generated(n, kind);
      CheckAgainstLibrary(values);
      std::sort(values.begin(), values.end());
      CheckAgainstLibrary(values);
      std::reverse(values.begin(), values.end());
      CheckAgainstLibrary(values);
      if (n > 2) std::swap(values[n / 2], values[n - 1]);
      CheckAgainstLibrary(values);
    }
  }
}

// The sample misses the median: it takes every tenth value, and those are the smallest.
TEST_CASE("the middle of a periodic series") {
  Values values(20480);
  for (std::size_t i = 0; i < values.size(); ++i)
    values[i] = static_cast<double>(i % 10 == 0 ? i : i * 7919 % 20480 + 100000);
  CheckAgainstLibrary(values);
}

TEST_CASE("the ends of the number line") {
  Values values;
  for (int i = 0; i < 60; ++i) {
    for (const double x : {Limits::infinity(), Limits::max(), Limits::min(), Limits::denorm_min()})
      values.insert(values.end(), {x, -x, 0.0, -0.0});
  }
  CheckAgainstLibrary(values);
  values.resize(100);
  CheckAgainstLibrary(values);
}

// Nothing is lost, numbers stay in order, and the same set gives the same series.
TEST_CASE("not-a-numbers do no harm") {
  std::mt19937_64 random(6);
  for (const std::size_t n : std::initializer_list<std::size_t>{50, 5000}) {
    // NOLINTNEXTLINE(misc-redundant-expression): each call gives another number.
    Values values = Generated(n, [&] { return std::bit_cast<double>(random() | random()); });
    values[n / 2] = std::bit_cast<double>(std::uint64_t{0} - 15);
    const Values sorted = Sorted(values);
    auto before = Bits(values);
    auto after = Bits(sorted);
    std::sort(before.begin(), before.end());
    std::sort(after.begin(), after.end());
    CHECK(before == after);
    Values numbers = sorted;
    std::erase_if(numbers, [](double x) { return std::isnan(x); });
    CHECK(std::is_sorted(numbers.begin(), numbers.end()));
    std::shuffle(values.begin(), values.end(), random);
    CHECK(Bits(Sorted(values)) == Bits(sorted));
  }
}

}  // namespace zavrel::tests
