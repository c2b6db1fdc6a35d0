// Columns of a normal quantile plot: ZavQQPlotStandardize, ZavQQPlotSort, ZavQQPlotZValue. Only
// numbers are used; each column has a row for each of them.
#include <array>
#include <variant>

#include "data/get_parameters.h"
#include "frame/worksheet_function.h"
#include "functions/chart_column.h"
#include "functions/distributions.h"
#include "functions/sample_scale.h"
#include "platform/export.h"
#include "stats/standardize.h"

namespace zavrel {
namespace {

XXloper NoValue() { return XXloper::Error(ExcelError::kValue); }

XXloper NormalQuantiles(std::size_t n, const SampleScale& scale) {
  bool failed = false;
  XXloper column = ChartColumn(n, [&](std::size_t i) {
    const double p = (static_cast<double>(i) + 0.5) / static_cast<double>(n);
    double quantile = 0;
    failed = failed ||
             NormalProperty(scale.mean, scale.standard_deviation, kQuantile, p, &quantile) != 0;
    return quantile;
  });
  return failed ? NoValue() : column;
}

}  // namespace

/// z-scores in sheet order: (x - mean) / sample standard deviation. Not 1 to 65,535 numbers:
/// #VALUE!; one or only equal ones: #DIV/0!.
ZAV_EXPORT XLOPER12* ZavrelQQPlotStandardize(const XLOPER12* data) {
  return WorksheetFunction("ZavrelQQPlotStandardize", [&]() -> XXloper {
    const Parameters parameters =
        GetParameters("R", MissingDataPolicy::kNumbersOnly, std::array{data});
    if (!parameters.accepted()) return parameters.failure();
    const std::span<const double> numbers = parameters.numbers(0);
    if (numbers.empty()) return NoValue();
    const auto scale = SampleScaleOf(parameters.data(0));
    if (const auto* failure = std::get_if<XXloper>(&scale)) return *failure;
    const auto [mean, deviation] = std::get<SampleScale>(scale);
    return ChartColumn(numbers.size(), [&, mean = mean, deviation = deviation](std::size_t i) {
      return Standardize(numbers[i], mean, deviation).value;
    });
  });
}

/// The numbers in ascending order. Not 1 to 65,535 numbers: #VALUE!.
ZAV_EXPORT XLOPER12* ZavrelQQPlotSort(const XLOPER12* data) {
  return WorksheetFunction("ZavrelQQPlotSort", [&]() -> XXloper {
    const Parameters parameters =
        GetParameters("R", MissingDataPolicy::kNumbersOnly, std::array{data});
    if (!parameters.accepted()) return parameters.failure();
    const std::span<const double> sorted = parameters.data(0).SortedNumbers();
    if (sorted.empty()) return NoValue();
    return ChartColumn(sorted.size(), [&](std::size_t i) { return sorted[i]; });
  });
}

/// The theoretical axis: normal quantiles at (i + 0.5) / n, i = 0 ... n - 1, with the data's mean
/// and sample standard deviation, or with 0 and 1 when `standardized` is other than 0. Not 1 to
/// 65,535 numbers, or the normal distribution not at hand: #VALUE!; for the data's own scale, one
/// number or only equal ones: #DIV/0!.
ZAV_EXPORT XLOPER12* ZavrelQQPlotZValue(const XLOPER12* data, const XLOPER12* standardized) {
  return WorksheetFunction("ZavrelQQPlotZValue", [&]() -> XXloper {
    const Parameters parameters =
        GetParameters("Rd", MissingDataPolicy::kNumbersOnly, std::array{data, standardized});
    if (!parameters.accepted()) return parameters.failure();
    const std::size_t n = parameters.numbers(0).size();
    if (n == 0 || n > kMostChartPoints) return NoValue();
    if (parameters.given(1) && parameters.number(1) != 0) return NormalQuantiles(n, SampleScale{});
    const auto scale = SampleScaleOf(parameters.data(0));
    if (const auto* failure = std::get_if<XXloper>(&scale)) return *failure;
    return NormalQuantiles(n, std::get<SampleScale>(scale));
  });
}

}  // namespace zavrel
