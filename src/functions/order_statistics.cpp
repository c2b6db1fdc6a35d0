// The order statistics of one data set: ZavPercentile, ZavQuartile, ZavMedian.
//
// Each takes a percentile method as its last argument, -1 when it is not given; stats/target.h says
// which textbook definition each code stands for.
#include <cmath>

#include "bindings/target_computation.h"
#include "data/get_parameters.h"
#include "excel/double_value.h"
#include "frame/worksheet_function.h"
#include "platform/export.h"
#include "stats/target.h"

namespace zavrel {
namespace {

XXloper NoValue() { return XXloper::Error(ExcelError::kValue); }

/// The p-th percentile of the data set in front of the arguments, by the method at this position.
XXloper PercentileOf(const Parameters& parameters, double p, std::size_t method_position) {
  const std::int32_t method =
      parameters.given(method_position) ? parameters.integer(method_position) : -1;
  if (method < Stats::kFirstPercentileMethod || method > Stats::kLastPercentileMethod)
    return NoValue();
  ExcelData& data = parameters.data(0);
  const std::span<const double> sorted = data.SortedNumbers();
  if (sorted.empty()) return NoValue();
  const bool automatic = method == static_cast<int>(Stats::PercentileMethod::kAutomatic);
  const auto percentile = PercentileOfSorted(
      sorted, p, static_cast<std::int16_t>(method),
      automatic ? SettingOf(data.Discreteness().forPercentile) : DiscreteSetting::kUnknown);
  return percentile ? ToExcelValue(*percentile) : NoValue();
}

}  // namespace

/// The p-th percentile of the numbers. #VALUE! for a p outside 0..1, a method that there is not,
/// and data without a number.
ZAV_EXPORT XLOPER12* ZavrelPercentile(const XLOPER12* range, const XLOPER12* p,
                                      const XLOPER12* method) {
  return WorksheetFunction("ZavrelPercentile", [&] {
    const XLOPER12* const arguments[] = {range, p, method};
    const Parameters parameters = GetParameters("RDl", MissingDataPolicy::kNumbersOnly, arguments);
    if (!parameters.accepted()) return parameters.failure();
    return PercentileOf(parameters, parameters.number(1), 2);
  });
}

/// The minimum, the first quartile, the median, the third quartile or the maximum, by the quartile
/// numbers 0 to 4; any other number, whole or not, is #VALUE!, as is what ZavPercentile refuses.
ZAV_EXPORT XLOPER12* ZavrelQuartile(const XLOPER12* range, const XLOPER12* quartile,
                                    const XLOPER12* method) {
  return WorksheetFunction("ZavrelQuartile", [&] {
    const XLOPER12* const arguments[] = {range, quartile, method};
    const Parameters parameters = GetParameters("RDl", MissingDataPolicy::kNumbersOnly, arguments);
    if (!parameters.accepted()) return parameters.failure();
    const double number = parameters.number(1);
    if (number != std::floor(number) || number < 0 || number > 4) return NoValue();
    return PercentileOf(parameters, number / 4, 2);
  });
}

/// The median: the percentile at p = 0.5, with ZavPercentile's errors.
ZAV_EXPORT XLOPER12* ZavrelMedian(const XLOPER12* range, const XLOPER12* method) {
  return WorksheetFunction("ZavrelMedian", [&] {
    const XLOPER12* const arguments[] = {range, method};
    const Parameters parameters = GetParameters("Rl", MissingDataPolicy::kNumbersOnly, arguments);
    if (!parameters.accepted()) return parameters.failure();
    return PercentileOf(parameters, 0.5, 1);
  });
}

}  // namespace zavrel
