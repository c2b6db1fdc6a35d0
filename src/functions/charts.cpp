// Helper columns of charts: ZavBoxPlotX, ZavBoxPlotY, ZavBoxPlotCountOutliers, ZavOutlierType and
// ZavScatterPlot. docs/charts.md shows how to build a chart on them.
//
// Only numbers are used. A percentile method is one of ZavPercentile's; any other value counts as
// -1, the automatic method, so that a wrong method does not make the chart vanish.
#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

#include "bindings/target_computation.h"
#include "excel/double_value.h"
#include "frame/worksheet_function.h"
#include "functions/cached_statistic.h"
#include "functions/chart_column.h"
#include "functions/pairs_read.h"
#include "functions/percentile.h"
#include "numbers/error_double.h"
#include "platform/export.h"
#include "stats/box_plot.h"
#include "stats/box_plot_series.h"
#include "stats/pairs.h"
#include "stats/target.h"

namespace zavrel {
namespace {

constexpr Reading kData("R", MissingDataPolicy::kNumbersOnly);
constexpr Reading kDataAndCode("RL", MissingDataPolicy::kNumbersOnly);
constexpr Reading kDataAndNumber("RD", MissingDataPolicy::kNumbersOnly);

OrFailure<std::int32_t> LenientMethod(const XLOPER12* argument) {
  constexpr auto kAutomatic = static_cast<std::int32_t>(Stats::PercentileMethod::kAutomatic);
  const Scalar<std::int32_t> method = ReadInteger(argument, Presence::kOptional);
  if (!method.ok() && method.failure().uncalculated()) return method.failure();
  const bool known = method.ok() && *method && **method >= Stats::kFirstPercentileMethod &&
                     **method <= Stats::kLastPercentileMethod;
  return known ? **method : kAutomatic;
}

OrFailure<Quartiles> QuartilesOf(ExcelData& data, std::int32_t method) {
  std::array<double, 3> quartiles{};
  for (std::size_t i = 0; i < quartiles.size(); ++i) {
    const OrFailure<double> quartile = PercentileOf(data, static_cast<double>(i + 1) / 4, method);
    if (!quartile.ok()) return quartile.failure();
    if (IsErrorCoded(*quartile)) return Failure(ToExcelValue(*quartile));
    quartiles[i] = *quartile;
  }
  return Quartiles{quartiles[0], quartiles[1], quartiles[2]};
}

/// The summary behind all functions of the box plot. Data without a number: #VALUE!.
OrFailure<BoxPlot> BoxPlotOf(ExcelData& data, const XLOPER12* method_argument) {
  const OrFailure<std::int32_t> method = LenientMethod(method_argument);
  if (!method.ok()) return method.failure();
  const std::span<const double> sorted = data.SortedNumbers();
  if (sorted.empty()) return Failure(ExcelError::kValue);
  const double mean = CachedStatistic(data, StatisticId::kMean, Form::kSample);
  if (std::isnan(mean)) return Failure(ToExcelValue(mean));
  const OrFailure<Quartiles> quartiles = QuartilesOf(data, *method);
  if (!quartiles.ok()) return quartiles.failure();
  return BoxPlot(sorted, mean, *quartiles);
}

/// True for a number and for an array that begins with one. Blank cells, truth values and texts are
/// not numbers here, although other functions convert them.
bool IsNumber(const XLOPER12* x) {
  if (IsOmitted(x)) return false;
  const std::span<const XLOPER12> elements = ElementsIn(*x);
  const std::uint32_t type = TypeOf(elements.empty() ? *x : elements.front());
  return type == xltypeNum || type == xltypeInt;
}

/// The numbers of the first (`wanted` 0) or second of two ranges, in the rows where both have a
/// number.
CellResult CompletePairs(const Parameters& read, std::size_t wanted) {
  const PairedValues x = read.numbers(0);
  const PairedValues y = read.numbers(1);
  const std::size_t pairs = CountPairs(x, y);
  if (pairs == 0) return Failure(ExcelError::kValue);
  const PairedValues column = wanted == 0 ? x : y;
  std::size_t next = 0;
  return ChartColumn(pairs, [&](std::size_t) {
    while (x[next] == kMissingValue || y[next] == kMissingValue) ++next;
    return column[next++];
  });
}

}  // namespace

/// The coordinates of one part of a data set's box plot along the data axis, by its number 1 to 9
/// (stats/box_plot_series.h). Another number, data without a number, or more than 65,535 outliers
/// in the group: #VALUE!.
ZAV_EXPORT XLOPER12* ZavrelBoxPlotX(const XLOPER12* data, const XLOPER12* method,
                                    const XLOPER12* series_code) {
  return WorksheetFunction("ZavrelBoxPlotX", kDataAndCode, {data, series_code},
                           [&](const Parameters& read) -> CellResult {
                             const auto series = BoxPlotSeriesOf(read.integer(1));
                             if (!series) return Failure(ExcelError::kValue);
                             const OrFailure<BoxPlot> plot = BoxPlotOf(read.data(0), method);
                             if (!plot.ok()) return plot.failure();
                             std::array<double, kMostBoxPlotPoints> room{};
                             const auto along = CoordinatesAlong(*plot, *series, room);
                             return ChartColumn(along.size(),
                                                [&](std::size_t row) { return along[row]; });
                           });
}

/// The matching coordinates across the data axis, for the plot at place n of several: numbers
/// around n. For a group of outliers, n in each row of the calling range; rows beyond the outliers
/// do no harm, because their other coordinate is #N/A. An unknown series: #VALUE!.
ZAV_EXPORT XLOPER12* ZavrelBoxPlotY(std::int32_t n, const XLOPER12* series_code) {
  return WorksheetFunction(
      "ZavrelBoxPlotY", Reading("L"), {series_code}, [&](const Parameters& read) -> CellResult {
        const auto series = BoxPlotSeriesOf(read.integer(0));
        if (!series) return Failure(ExcelError::kValue);
        const std::span<const double> across = CoordinatesAcross(*series);
        if (!across.empty())
          return ChartColumn(across.size(), [&](std::size_t row) { return n + across[row]; });
        const OrFailure<CallingRange> caller = CallingRange::Ask();
        if (!caller.ok()) return caller.failure();
        const std::int32_t rows = std::clamp(caller->rows(), 1, kMostResultRows);
        return ChartColumn(static_cast<std::size_t>(rows), [&](std::size_t) { return n; });
      });
}

/// The size of the largest of the four groups of outliers: the number of rows that a chart needs
/// for each. -1 if there is no box plot.
ZAV_EXPORT std::int32_t ZavrelBoxPlotCountOutliers(const XLOPER12* data, const XLOPER12* method) {
  constexpr std::int32_t kNoPlot = -1;
  return PlainFunction("ZavrelBoxPlotCountOutliers", kNoPlot, kData, {data},
                       [&](const Parameters& read) -> OrFailure<std::int32_t> {
                         const OrFailure<BoxPlot> plot = BoxPlotOf(read.data(0), method);
                         if (!plot.ok()) return plot.failure();
                         return static_cast<std::int32_t>(plot->MostOutliers());
                       });
}

/// The place of a value, from the data or not, on the data's box plot: 0 not an outlier, 1 a mild
/// outlier (on or beyond an inner fence), 2 an extreme one (on or beyond an outer fence). An x that
/// is not a number, or data without a number: #VALUE!.
ZAV_EXPORT XLOPER12* ZavrelOutlierType(const XLOPER12* data, const XLOPER12* method,
                                       const XLOPER12* x) {
  return WorksheetFunction("ZavrelOutlierType", kDataAndNumber.OnlyIf(IsNumber(x)), {data, x},
                           [&](const Parameters& read) -> CellResult {
                             const OrFailure<BoxPlot> plot = BoxPlotOf(read.data(0), method);
                             if (!plot.ok()) return plot.failure();
                             return static_cast<double>(plot->fences.TypeOf(read.number(1)));
                           });
}

/// A column of the x values (`which` 0) or the y values (1) of the complete pairs: row i of one
/// range is paired with row i of the other, and the pair is complete if both hold a number. Another
/// `which`, no complete pair, or more than 65,535: #VALUE!.
ZAV_EXPORT XLOPER12* ZavrelScatterPlot(const XLOPER12* x, const XLOPER12* y, std::int16_t which) {
  return WorksheetFunction(
      "ZavrelScatterPlot", kPairs.OnlyIf(which == 0 || which == 1), {x, y},
      [&](const Parameters& read) { return CompletePairs(read, static_cast<std::size_t>(which)); });
}

}  // namespace zavrel
