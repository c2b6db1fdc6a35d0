// Statistics of classical tests on one series: ZavLilliefors, ZavRunsTest, ZavDurbinWatson,
// ZavAutocorrelation. Each takes the numbers of its data alone; the statistic is all it gives.
#include <array>
#include <optional>
#include <variant>

#include "data/get_parameters.h"
#include "excel/double_value.h"
#include "frame/worksheet_function.h"
#include "functions/distributions.h"
#include "functions/sample_scale.h"
#include "platform/export.h"
#include "stats/autocorrelation.h"
#include "stats/durbin_watson.h"
#include "stats/lilliefors.h"
#include "stats/runs.h"

namespace zavrel {
namespace {

Parameters ReadSeries(const XLOPER12* series) {
  return GetParameters("R", MissingDataPolicy::kNumbersOnly, std::array{series});
}

std::span<const double> InSheetOrder(const Parameters& parameters) { return parameters.numbers(0); }

XXloper Lilliefors(ExcelData& data) {
  const std::span<const double> sorted = data.SortedNumbers();
  if (sorted.empty()) return XXloper::Error(ExcelError::kValue);
  const auto scale = SampleScaleOf(data);
  if (const auto* failure = std::get_if<XXloper>(&scale)) return *failure;
  const SampleScale& of_data = std::get<SampleScale>(scale);
  return ToExcelValue(LargestDistance(sorted, [&](double x) -> std::optional<double> {
    double probability = 0;
    if (NormalProperty(of_data.mean, of_data.standard_deviation, kCumulativeProbability, x,
                       &probability) != 0) {
      return {};
    }
    return probability;
  }));
}

}  // namespace

/// The Lilliefors statistic for normality (stats/lilliefors.h). No number, or the normal
/// distribution not at hand: #VALUE!; one number or only equal ones: #DIV/0!.
ZAV_EXPORT XLOPER12* ZavrelLilliefors(const XLOPER12* series) {
  return WorksheetFunction("ZavrelLilliefors", [&]() -> XXloper {
    const Parameters parameters = ReadSeries(series);
    return parameters.accepted() ? Lilliefors(parameters.data(0)) : parameters.failure();
  });
}

/// The number of runs about the cut-off (stats/runs.h). No number: #VALUE!.
ZAV_EXPORT XLOPER12* ZavrelRunsTest(const XLOPER12* series, double cutoff) {
  return WorksheetFunction("ZavrelRunsTest", [&]() -> XXloper {
    const Parameters parameters = ReadSeries(series);
    if (!parameters.accepted()) return parameters.failure();
    return ToExcelValue(CountRuns(InSheetOrder(parameters), cutoff));
  });
}

/// The Durbin-Watson statistic of residuals in time order (stats/durbin_watson.h). Fewer than two:
/// #VALUE!; all of them 0: #DIV/0!; squares beyond a double: #NUM!.
ZAV_EXPORT XLOPER12* ZavrelDurbinWatson(const XLOPER12* residuals) {
  return WorksheetFunction("ZavrelDurbinWatson", [&]() -> XXloper {
    const Parameters parameters = ReadSeries(residuals);
    if (!parameters.accepted()) return parameters.failure();
    return ToExcelValue(DurbinWatson(InSheetOrder(parameters)));
  });
}

/// The autocorrelation at a lag from 0 to 250 (stats/autocorrelation.h). Another lag, one beyond
/// the series, or no number: #VALUE!; only equal numbers: #DIV/0!.
ZAV_EXPORT XLOPER12* ZavrelAutocorrelation(const XLOPER12* series, std::int32_t lag) {
  return WorksheetFunction("ZavrelAutocorrelation", [&]() -> XXloper {
    constexpr std::int32_t kLastLag = 250;
    if (lag < 0 || lag > kLastLag) return XXloper::Error(ExcelError::kValue);
    const Parameters parameters = ReadSeries(series);
    if (!parameters.accepted()) return parameters.failure();
    return ToExcelValue(Autocorrelation(InSheetOrder(parameters), static_cast<std::size_t>(lag)));
  });
}

}  // namespace zavrel
