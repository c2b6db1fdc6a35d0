// Helper columns of charts: ZavBoxPlotX, ZavBoxPlotY, ZavBoxPlotCountOutliers, ZavOutlierType and
// ZavScatterPlot. docs/charts.md shows how to build a chart on them.
//
// Only numbers are used. A percentile method is one of ZavPercentile's; whatever else stands in its
// place counts as -1, the automatic one, so that a chart does not vanish over it.
#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <variant>

#include "bindings/target_computation.h"
#include "data/cell_layout.h"
#include "data/get_parameters.h"
#include "excel/double_value.h"
#include "frame/worksheet_function.h"
#include "functions/cached_statistic.h"
#include "functions/chart_column.h"
#include "numbers/error_double.h"
#include "platform/export.h"
#include "stats/box_plot.h"
#include "stats/box_plot_series.h"
#include "stats/pairs.h"
#include "stats/target.h"

namespace zavrel {
namespace {

XXloper NoValue() { return XXloper::Error(ExcelError::kValue); }

/// Nothing when the host has still to calculate the argument: it calls again.
std::optional<std::int16_t> LenientMethod(const XLOPER12* argument) {
  const auto method = ReadInteger(XXloper::FromArgument(argument), Presence::kOptional);
  if (method.status == ScalarStatus::kUncalculated) return {};
  const bool known = method.given() && method.value >= Stats::kFirstPercentileMethod &&
                     method.value <= Stats::kLastPercentileMethod;
  return known ? static_cast<std::int16_t>(method.value)
               : static_cast<std::int16_t>(Stats::PercentileMethod::kAutomatic);
}

/// Either what was asked for, or the value that the call returns instead.
template <class T>
using OrFailure = std::variant<T, XXloper>;

OrFailure<Quartiles> QuartilesOf(ExcelData& data, std::int16_t method) {
  const std::span<const double> sorted = data.SortedNumbers();
  const bool automatic = method == static_cast<int>(Stats::PercentileMethod::kAutomatic);
  const DiscreteSetting setting =
      automatic ? SettingOf(data.Discreteness().forPercentile) : DiscreteSetting::kUnknown;
  std::array<double, 3> quartiles{};
  for (std::size_t i = 0; i < quartiles.size(); ++i) {
    const auto p = static_cast<double>(i + 1) / 4;
    const std::optional<double> quartile = PercentileOfSorted(sorted, p, method, setting);
    if (!quartile) return NoValue();
    if (IsErrorCoded(*quartile)) return ToExcelValue(*quartile);
    quartiles[i] = *quartile;
  }
  return Quartiles{quartiles[0], quartiles[1], quartiles[2]};
}

/// The summary that all functions of the box plot share. Without a number: #VALUE!.
OrFailure<BoxPlot> BoxPlotOf(ExcelData& data, const XLOPER12* method_argument) {
  const std::optional<std::int16_t> method = LenientMethod(method_argument);
  if (!method) return XXloper::Error(ExcelError::kRef);
  const std::span<const double> sorted = data.SortedNumbers();
  if (sorted.empty()) return NoValue();
  const double mean = CachedStatistic(data, StatisticId::kMean, Form::kSample);
  if (std::isnan(mean)) return ToExcelValue(mean);
  const OrFailure<Quartiles> quartiles = QuartilesOf(data, *method);
  if (const auto* failure = std::get_if<XXloper>(&quartiles)) return *failure;
  return BoxPlot(sorted, mean, std::get<Quartiles>(quartiles));
}

std::optional<BoxPlotSeries> ReadSeriesCode(const Parameters& parameters, std::size_t position) {
  return BoxPlotSeriesOf(parameters.integer(position));
}

/// The numbers of one of two ranges in the rows where both have one.
XXloper CompletePairs(const Parameters& parameters, std::size_t wanted) {
  const PairedValues x = parameters.numbers(0);
  const PairedValues y = parameters.numbers(1);
  const auto layout = [&](std::size_t i) { return parameters.data(i).layout(); };
  if (!CanPairShorter(layout(0), x.size(), layout(1), y.size())) return NoValue();
  const std::size_t pairs = CountPairs(x, y);
  if (pairs == 0) return NoValue();
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
  return WorksheetFunction("ZavrelBoxPlotX", [&]() -> XXloper {
    const Parameters parameters =
        GetParameters("RL", MissingDataPolicy::kNumbersOnly, std::array{data, series_code});
    if (!parameters.accepted()) return parameters.failure();
    const auto series = ReadSeriesCode(parameters, 1);
    if (!series) return NoValue();
    const OrFailure<BoxPlot> plot = BoxPlotOf(parameters.data(0), method);
    if (const auto* failure = std::get_if<XXloper>(&plot)) return *failure;
    std::array<double, kMostBoxPlotPoints> room{};
    const auto along = CoordinatesAlong(std::get<BoxPlot>(plot), *series, room);
    return ChartColumn(along.size(), [&](std::size_t row) { return along[row]; });
  });
}

/// The coordinates across the data axis that go with those, for the plot at place n of several:
/// the numbers around n; for a group of outliers n in each row of the calling range, however many
/// outliers there are, as the other coordinate of an unused row is #N/A. A series that there is
/// not: #VALUE!.
ZAV_EXPORT XLOPER12* ZavrelBoxPlotY(std::int32_t n, const XLOPER12* series_code) {
  return WorksheetFunction("ZavrelBoxPlotY", [&]() -> XXloper {
    const Parameters parameters =
        GetParameters("L", MissingDataPolicy::kNumbersOnly, std::array{series_code});
    if (!parameters.accepted()) return parameters.failure();
    const auto series = ReadSeriesCode(parameters, 0);
    if (!series) return NoValue();
    const std::span<const double> across = CoordinatesAcross(*series);
    if (!across.empty())
      return ChartColumn(across.size(), [&](std::size_t row) { return n + across[row]; });
    const std::int32_t rows = std::clamp(CallingRange::Ask().rows(), 1, kMostResultRows);
    return ChartColumn(static_cast<std::size_t>(rows), [&](std::size_t) { return n; });
  });
}

/// The size of the largest of the four groups of outliers, which is how many rows a chart needs for
/// each; -1 when there is no box plot.
ZAV_EXPORT std::int32_t ZavrelBoxPlotCountOutliers(const XLOPER12* data, const XLOPER12* method) {
  constexpr std::int32_t kNoPlot = -1;
  return PlainFunction("ZavrelBoxPlotCountOutliers", kNoPlot, [&] {
    const Parameters parameters =
        GetParameters("R", MissingDataPolicy::kNumbersOnly, std::array{data});
    if (!parameters.accepted()) return kNoPlot;
    const OrFailure<BoxPlot> plot = BoxPlotOf(parameters.data(0), method);
    const auto* summary = std::get_if<BoxPlot>(&plot);
    return summary != nullptr ? static_cast<std::int32_t>(summary->MostOutliers()) : kNoPlot;
  });
}

/// Where a value, of the data or not, lies on the data's box plot: 0 no outlier, 1 a mild one, on
/// or beyond an inner fence, 2 an extreme one, on or beyond an outer fence. An x that is no number,
/// or data without one: #VALUE!.
ZAV_EXPORT XLOPER12* ZavrelOutlierType(const XLOPER12* data, const XLOPER12* method,
                                       const XLOPER12* x) {
  return WorksheetFunction("ZavrelOutlierType", [&]() -> XXloper {
    const Parameters parameters =
        GetParameters("RD", MissingDataPolicy::kNumbersOnly, std::array{data, x});
    if (!parameters.accepted()) return parameters.failure();
    const OrFailure<BoxPlot> plot = BoxPlotOf(parameters.data(0), method);
    if (const auto* failure = std::get_if<XXloper>(&plot)) return *failure;
    const OutlierType type = std::get<BoxPlot>(plot).fences.TypeOf(parameters.number(1));
    return XXloper::Number(static_cast<double>(type));
  });
}

/// A column of the x values (`which` 0) or the y values (1) of the complete pairs: row i of the one
/// range goes with row i of the other, and counts where both hold a number. Another `which`, or not
/// 1 to 65,535 complete pairs: #VALUE!.
ZAV_EXPORT XLOPER12* ZavrelScatterPlot(const XLOPER12* x, const XLOPER12* y, std::int16_t which) {
  return WorksheetFunction("ZavrelScatterPlot", [&]() -> XXloper {
    if (which != 0 && which != 1) return NoValue();
    const Parameters parameters =
        GetParameters("RR", MissingDataPolicy::kPositional, std::array{x, y});
    if (!parameters.accepted()) return parameters.failure();
    return CompletePairs(parameters, static_cast<std::size_t>(which));
  });
}

}  // namespace zavrel
