// Test statistics of series, and box plots, beside R's.
#include <doctest/doctest.h>

#include <cmath>
#include <limits>

#include "numbers/error_double.h"
#include "stats/autocorrelation.h"
#include "stats/box_plot.h"
#include "stats/durbin_watson.h"
#include "stats/lilliefors.h"
#include "stats/moment_block.h"
#include "stats/normal.h"
#include "stats/runs.h"
#include "stats/sort_ascending.h"
#include "stats/target.h"
#include "support/csv_lines.h"

namespace zavrel::tests {
namespace {

using Values = std::vector<double>;

Values Sorted(Values values) {
  SortAscending(values);
  return values;
}

double Lilliefors(const Values& values) {
  const MomentBlock moments = ComputeMoments(values, Form::kSample);
  return LargestDistance(Sorted(values), [&](double x) {
    return NormalUpperTail((moments.mean - x) / moments.standard_deviation);
  });
}

double DurbinWatsonOfDeviations(Values values) {
  const double mean = ComputeMoments(values, Form::kSample).mean;
  for (double& x : values) x -= mean;
  return DurbinWatson(values);
}

/// Quartiles, sizes of the four groups, whisker ends.
Values BoxPlotNumbers(const Values& values) {
  const Values sorted = Sorted(values);
  const auto quartile = [&](double p) {
    return Stats::Target(sorted, Stats::Direction::kProbabilityToValue, 0,
                         DiscreteSetting::kUnknown, p);
  };
  const BoxPlot plot(sorted, 0, {quartile(0.25), quartile(0.5), quartile(0.75)});
  Values numbers{plot.quartiles.lower, plot.quartiles.median, plot.quartiles.upper};
  for (const auto group :
       {plot.lower_extreme, plot.lower_mild, plot.upper_mild, plot.upper_extreme}) {
    numbers.push_back(static_cast<double>(group.size()));
  }
  numbers.insert(numbers.end(), {plot.lower_whisker, plot.upper_whisker});
  return numbers;
}

bool AreClose(double a, double b) { return std::abs(a - b) < 1e-13 * std::max(1.0, std::abs(b)); }

}  // namespace

TEST_CASE("series tests and box plots as R computes them") {
  Values values;
  int lines = 0;
  for (const auto& [kind, texts, numbers] : CsvLines("series.csv")) {
    INFO("kind = ", kind, ", lines = ", lines);
    ++lines;
    switch (kind) {
      case 'x':
        values = numbers;
        break;
      case 'l':
        CHECK(AreClose(Lilliefors(values), numbers[0]));
        break;
      case 'd':
        CHECK(AreClose(DurbinWatsonOfDeviations(values), numbers[0]));
        break;
      case 'r':
        CHECK(CountRuns(values, numbers[0]) == numbers[1]);
        break;
      case 'a':
        CHECK(AreClose(Autocorrelation(values, static_cast<std::size_t>(numbers[0])), numbers[1]));
        break;
      case 'b': {
        const Values own = BoxPlotNumbers(values);
        for (std::size_t i = 0; i < numbers.size(); ++i) CHECK(AreClose(own[i], numbers[i]));
        break;
      }
      default:
        FAIL("a line of no kind");
    }
  }
  CHECK(lines > 60);
}

TEST_CASE("series of no values, of infinities and below the smallest normal number") {
  CHECK(HasCondition(CountRuns({}, 0), kConditionNotComputed));
  CHECK(HasCondition(Autocorrelation({}, 0), kConditionNotComputed));
  const double infinity = std::numeric_limits<double>::infinity();
  CHECK(HasCondition(Autocorrelation(Values{1, infinity, 2}, 1), kConditionNotFinite));
  CHECK(Autocorrelation(Values{-4e-320, 4e-320, -4e-320, 4e-320}, 2) == 0.5);
  CHECK(HasCondition(DurbinWatson(Values{0, 0, -0.0}), kConditionTooFew));
  CHECK(DurbinWatson(Values{4e-320, 0}) == 1);
}

TEST_CASE("the largest distance from a distribution") {
  const auto uniform = [](double x) { return x; };
  CHECK(LargestDistance(Values{0.5}, uniform) == 0.5);
  CHECK(LargestDistance(Values{0.25, 0.25, 0.25, 0.25}, uniform) == 0.75);
  CHECK(LargestDistance(Values{0.5, 0.75}, uniform) == 0.5);  // in front of the first step
  CHECK(HasCondition(LargestDistance({}, uniform), kConditionNotComputed));
  int asked = 0;
  const auto fails = [&](double) -> std::optional<double> {
    if (++asked == 2) return std::nullopt;
    return 0.5;
  };
  CHECK(HasCondition(LargestDistance(Values{1, 2, 3}, fails), kConditionNotComputed));
  CHECK(asked == 2);
}

}  // namespace zavrel::tests
