// Statistics of classical tests on one series: ZavLilliefors, ZavRunsTest, ZavDurbinWatson,
// ZavAutocorrelation. Each uses only the numbers of its data, in sheet order, and gives only the
// statistic.
#include <optional>

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

constexpr Reading kSeries("R", MissingDataPolicy::kNumbersOnly);

CellResult Lilliefors(ExcelData& data) {
  const std::span<const double> sorted = data.SortedNumbers();
  if (sorted.empty()) return Failure(ExcelError::kValue);
  const OrFailure<SampleScale> scale = SampleScaleOf(data);
  if (!scale.ok()) return scale.failure();
  return LargestDistance(sorted, [&](double x) -> std::optional<double> {
    double probability = 0;
    if (NormalProperty(scale->mean, scale->standard_deviation, kCumulativeProbability, x,
                       &probability) != 0) {
      return {};
    }
    return probability;
  });
}

}  // namespace

/// The Lilliefors statistic for normality (stats/lilliefors.h). No number, or no companion for the
/// normal distribution: #VALUE!; one number or only equal ones: #DIV/0!.
ZAV_EXPORT XLOPER12* ZavrelLilliefors(const XLOPER12* series) {
  return WorksheetFunction("ZavrelLilliefors", kSeries, {series},
                           [](const Parameters& read) { return Lilliefors(read.data(0)); });
}

/// The number of runs about the cut-off (stats/runs.h). No number: #VALUE!.
ZAV_EXPORT XLOPER12* ZavrelRunsTest(const XLOPER12* series, double cutoff) {
  return WorksheetFunction("ZavrelRunsTest", kSeries, {series}, [&](const Parameters& read) {
    return CountRuns(read.numbers(0), cutoff);
  });
}

/// The Durbin-Watson statistic of residuals in time order (stats/durbin_watson.h). Fewer than two:
/// #VALUE!; all of them 0: #DIV/0!; squares that overflow: #NUM!.
ZAV_EXPORT XLOPER12* ZavrelDurbinWatson(const XLOPER12* residuals) {
  return WorksheetFunction("ZavrelDurbinWatson", kSeries, {residuals},
                           [](const Parameters& read) { return DurbinWatson(read.numbers(0)); });
}

/// The autocorrelation at a lag from 0 to 250 (stats/autocorrelation.h). Another lag, a lag beyond
/// the series, or no number: #VALUE!; only equal numbers: #DIV/0!.
ZAV_EXPORT XLOPER12* ZavrelAutocorrelation(const XLOPER12* series, std::int32_t lag) {
  constexpr std::int32_t kLastLag = 250;
  return WorksheetFunction("ZavrelAutocorrelation", kSeries.OnlyIf(0 <= lag && lag <= kLastLag),
                           {series}, [&](const Parameters& read) {
                             return Autocorrelation(read.numbers(0), static_cast<std::size_t>(lag));
                           });
}

}  // namespace zavrel
