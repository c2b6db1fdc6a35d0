// Columns of a normal quantile plot: ZavQQPlotStandardize, ZavQQPlotSort, ZavQQPlotZValue. Only
// numbers are used; each column has a row for each of them.
#include <array>
#include <cmath>
#include <optional>

#include "addin/worksheet_function.h"
#include "data/get_parameters.h"
#include "excel/error_double.h"
#include "functions/cached_statistic.h"
#include "functions/calling_array.h"
#include "functions/distributions.h"
#include "functions/result_column.h"
#include "platform/export.h"

namespace zavrel {
namespace {

XXloper NoValue() { return XXloper::Error(ExcelError::kValue); }

struct Scale {
  double mean = 0;
  double standard_deviation = 1;
  /// The result of a call that could not get them.
  std::optional<XXloper> failure{};
};

/// Sample mean and standard deviation. One number or only equal ones: #DIV/0!.
Scale ScaleOf(ExcelData& data) {
  const double mean = CachedStatistic(data, StatisticId::kMean, Form::kSample);
  const double deviation = CachedStatistic(data, StatisticId::kStdDev, Form::kSample);
  for (const double statistic : {mean, deviation})
    if (std::isnan(statistic)) return {0, 1, ToExcelValue(statistic)};
  const std::span<const double> sorted = data.SortedNumbers();
  // Asked of the values too: the rounding of the mean gives equal ones deviations from it.
  if (deviation == 0 || sorted.front() == sorted.back())
    return {0, 1, XXloper::Error(ExcelError::kDiv0)};
  return {mean, deviation};
}

XXloper NormalQuantiles(std::size_t n, const Scale& scale) {
  bool failed = false;
  XXloper column = ResultColumn(n, [&](std::size_t i) {
    const double p = (static_cast<double>(i) + 0.5) / static_cast<double>(n);
    double quantile = 0;
    failed = failed ||
             NormalProperty(scale.mean, scale.standard_deviation, kQuantile, p, &quantile) != 0;
    return VariableCell::Number(quantile);
  });
  return failed ? NoValue() : column;
}

}  // namespace

/// z-scores in sheet order: (x - mean) / sample standard deviation. No number: #VALUE!; one or only
/// equal ones: #DIV/0!.
ZAV_EXPORT XLOPER12* ZavrelQQPlotStandardize(const XLOPER12* data) {
  return WorksheetFunction("ZavrelQQPlotStandardize", [&]() -> XXloper {
    const Parameters parameters =
        GetParameters("R", MissingDataPolicy::kNumbersOnly, std::array{data});
    if (!parameters.accepted()) return parameters.failure();
    const std::span<const double> numbers = parameters.numbers(0);
    if (numbers.empty()) return NoValue();
    const Scale scale = ScaleOf(parameters.data(0));
    if (scale.failure) return *scale.failure;
    return ResultColumn(numbers.size(), [&](std::size_t i) {
      return VariableCell::Number((numbers[i] - scale.mean) / scale.standard_deviation);
    });
  });
}

/// The numbers in ascending order. No number: #VALUE!.
ZAV_EXPORT XLOPER12* ZavrelQQPlotSort(const XLOPER12* data) {
  return WorksheetFunction("ZavrelQQPlotSort", [&]() -> XXloper {
    const Parameters parameters =
        GetParameters("R", MissingDataPolicy::kNumbersOnly, std::array{data});
    if (!parameters.accepted()) return parameters.failure();
    const std::span<const double> sorted = parameters.data(0).SortedNumbers();
    if (sorted.empty()) return NoValue();
    return ResultColumn(sorted.size(),
                        [&](std::size_t i) { return VariableCell::Number(sorted[i]); });
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
    if (n == 0 || n > kMostResultRows) return NoValue();
    const bool standard = parameters.given(1) && parameters.number(1) != 0;
    const Scale scale = standard ? Scale{} : ScaleOf(parameters.data(0));
    return scale.failure ? *scale.failure : NormalQuantiles(n, scale);
  });
}

}  // namespace zavrel
