#include "stats/box_plot.h"

#include <doctest/doctest.h>

#include <limits>
#include <vector>

#include "stats/box_plot_series.h"

namespace zavrel::tests {
namespace {

using Values = std::vector<double>;

Values Listed(std::span<const double> values) { return {values.begin(), values.end()}; }

Values Along(const BoxPlot& plot, BoxPlotSeries series) {
  std::array<double, kMostBoxPlotPoints> room{};
  return Listed(CoordinatesAlong(plot, series, room));
}

}  // namespace

TEST_CASE("a value on a fence is beyond it") {
  // Fences -6, 0 and 16, 22 around a box from 6 to 10.
  const Values sorted{-6.5, -6, -5.5, 0, 0.5, 6, 8, 10, 15.5, 16, 21.5, 22, 22.5};
  const BoxPlot plot(sorted, 7, {6, 8, 10});
  CHECK(Listed(plot.lower_extreme) == Values{-6.5, -6});
  CHECK(Listed(plot.lower_mild) == Values{-5.5, 0});
  CHECK(Listed(plot.upper_mild) == Values{16, 21.5});
  CHECK(Listed(plot.upper_extreme) == Values{22, 22.5});
  CHECK(plot.lower_whisker == 0.5);
  CHECK(plot.upper_whisker == 15.5);
  CHECK(plot.MostOutliers() == 2);
  int codes = 0;  // as digits, so that one comparison shows them all
  for (const double x : {-6.0, -5.5, 0.0, 0.5, 8.0, 15.5, 16.0, 21.5, 22.0})
    codes = codes * 10 + static_cast<int>(plot.fences.TypeOf(x));
  CHECK(codes == 211000112);
}

TEST_CASE("box plots without a spread, or with more than a double holds") {
  const Values equal(5, 3.0);
  const BoxPlot flat(equal, 3, {3, 3, 3});
  CHECK(flat.fences.TypeOf(3) == OutlierType::kExtreme);
  CHECK(flat.fences.TypeOf(2.9) == OutlierType::kExtreme);
  CHECK(flat.lower_extreme.size() + flat.upper_extreme.size() == 5);  // none in two groups
  CHECK(flat.MostOutliers() == 5);
  CHECK(flat.lower_whisker == 3);
  CHECK(flat.upper_whisker == 3);

  constexpr double kMost = std::numeric_limits<double>::max();
  const Values wide{-kMost, 0, kMost};
  const BoxPlot endless(wide, 0, {-kMost, 0, kMost});
  CHECK(endless.MostOutliers() == 0);
  CHECK(endless.upper_whisker == kMost);
}

TEST_CASE("the points of a box plot's parts") {
  const Values sorted{-6.5, 0.5, 6, 8, 10, 15.5, 16, 17};
  const BoxPlot plot(sorted, 7, {6, 8, 10});
  CHECK(Along(plot, BoxPlotSeries::kBox) == Values{6, 6, 10, 10, 6});
  CHECK(Along(plot, BoxPlotSeries::kLowerWhisker) == Values{6, 0.5, 0.5, 0.5});
  CHECK(Along(plot, BoxPlotSeries::kUpperWhisker) == Values{10, 15.5, 15.5, 15.5});
  CHECK(Along(plot, BoxPlotSeries::kMedian) == Values{8, 8});
  CHECK(Along(plot, BoxPlotSeries::kMean) == Values{7});
  CHECK(Along(plot, BoxPlotSeries::kLowerExtreme) == Values{-6.5});
  CHECK(Along(plot, BoxPlotSeries::kLowerMild).empty());
  CHECK(Along(plot, BoxPlotSeries::kUpperMild) == Values{16, 17});
  for (int code = 1; code <= 5; ++code) {
    const auto series = BoxPlotSeriesOf(code).value();
    CHECK(Along(plot, series).size() == CoordinatesAcross(series).size());
  }
  CHECK(!BoxPlotSeriesOf(0));
  CHECK(!BoxPlotSeriesOf(10));
  CHECK(!BoxPlotSeriesOf(-1));

  // An outlier and the next value with an interpolated quartile between them: no line into the box.
  const BoxPlot inside(Values{0, 100, 100, 100}, 75, {75, 100, 100});
  CHECK(inside.lower_whisker == 100);
  CHECK(Along(inside, BoxPlotSeries::kLowerWhisker) == Values{75, 75, 75, 75});
}

}  // namespace zavrel::tests
