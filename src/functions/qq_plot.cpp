// Columns of a normal quantile plot: ZavQQPlotStandardize, ZavQQPlotSort, ZavQQPlotZValue. Only
// numbers are used; each column has one row per number.
#include "frame/worksheet_function.h"
#include "functions/chart_column.h"
#include "functions/distributions.h"
#include "functions/sample_scale.h"
#include "platform/export.h"
#include "stats/standardize.h"

namespace zavrel {
namespace {

constexpr Reading kData("R", MissingDataPolicy::kNumbersOnly);
constexpr Reading kDataAndFlag("Rd", MissingDataPolicy::kNumbersOnly);

CellResult NormalQuantiles(std::size_t n, const SampleScale& scale) {
  bool failed = false;
  OrFailure<XXloper> column = ChartColumn(n, [&](std::size_t i) {
    const double p = (static_cast<double>(i) + 0.5) / static_cast<double>(n);
    double quantile = 0;
    failed = failed ||
             NormalProperty(scale.mean, scale.standard_deviation, kQuantile, p, &quantile) != 0;
    return quantile;
  });
  if (failed) return Failure(ExcelError::kValue);
  return column;
}

}  // namespace

/// z-scores in sheet order: (x - mean) / sample standard deviation. No numbers, or more than
/// 65,535: #VALUE!; one number or only equal ones: #DIV/0!.
ZAV_EXPORT XLOPER12* ZavrelQQPlotStandardize(const XLOPER12* data) {
  return WorksheetFunction(
      "ZavrelQQPlotStandardize", kData, {data}, [](const Parameters& read) -> CellResult {
        const std::span<const double> numbers = read.numbers(0);
        if (numbers.empty()) return Failure(ExcelError::kValue);
        const OrFailure<SampleScale> scale = SampleScaleOf(read.data(0));
        if (!scale.ok()) return scale.failure();
        return ChartColumn(numbers.size(), [&](std::size_t i) {
          return Standardize(numbers[i], scale->mean, scale->standard_deviation).value;
        });
      });
}

/// The numbers in ascending order. No numbers, or more than 65,535: #VALUE!.
ZAV_EXPORT XLOPER12* ZavrelQQPlotSort(const XLOPER12* data) {
  return WorksheetFunction(
      "ZavrelQQPlotSort", kData, {data}, [](const Parameters& read) -> CellResult {
        const std::span<const double> sorted = read.data(0).SortedNumbers();
        if (sorted.empty()) return Failure(ExcelError::kValue);
        return ChartColumn(sorted.size(), [&](std::size_t i) { return sorted[i]; });
      });
}

/// The theoretical axis: normal quantiles at (i + 0.5) / n, i = 0 ... n - 1, with the data's mean
/// and sample standard deviation, or with 0 and 1 when `standardized` is other than 0. No numbers,
/// more than 65,535, or no companion for the normal distribution: #VALUE!. On the data's own scale,
/// one number or only equal ones: #DIV/0!.
ZAV_EXPORT XLOPER12* ZavrelQQPlotZValue(const XLOPER12* data, const XLOPER12* standardized) {
  return WorksheetFunction("ZavrelQQPlotZValue", kDataAndFlag, {data, standardized},
                           [](const Parameters& read) -> CellResult {
                             const std::size_t n = read.numbers(0).size();
                             if (n == 0 || n > kMostChartPoints) return Failure(ExcelError::kValue);
                             if (read.number_or(1, 0) != 0)
                               return NormalQuantiles(n, SampleScale{});
                             const OrFailure<SampleScale> scale = SampleScaleOf(read.data(0));
                             if (!scale.ok()) return scale.failure();
                             return NormalQuantiles(n, *scale);
                           });
}

}  // namespace zavrel
