// The summary statistics of one data set: ZavMin ... ZavMode.
#include "data/get_parameters.h"
#include "excel/double_value.h"
#include "frame/worksheet_function.h"
#include "functions/cached_statistic.h"
#include "platform/export.h"
#include "stats/mode.h"

namespace zavrel {
namespace {

/// What a function does about cells that hold no number.
enum class Incomplete : bool { kUseNumbers, kRefuse };

using Arguments = std::span<const XLOPER12* const>;

XXloper UseNumbers(StatisticId id, Form form, Arguments arguments) {
  const Parameters parameters = GetParameters("V", MissingDataPolicy::kNumbersOnly, arguments);
  if (!parameters.accepted()) return parameters.failure();
  return ToExcelValue(CachedStatistic(parameters.data(0), id, form));
}

/// The empty text for data with a cell that is no number or without any cell, and for every
/// failure: never an error. A whole column counts as its used part; one that is blank has no cell.
XXloper RefuseIncomplete(StatisticId id, Form form, Arguments arguments) {
  const auto empty = [] { return XXloper::Text(u""); };
  try {
    const Parameters parameters = GetParameters("V", MissingDataPolicy::kPositional, arguments);
    if (!parameters.accepted()) return empty();
    ExcelData& data = parameters.data(0);
    if (data.size() == 0 || data.NumberCount() < data.size()) return empty();
    XXloper result = ToExcelValue(CachedStatistic(data, id, form));
    return result.Is(xltypeErr) ? empty() : result;
  } catch (...) {
    return empty();
  }
}

XXloper Describe(StatisticId id, Form form, Incomplete incomplete, Arguments arguments) {
  return incomplete == Incomplete::kRefuse ? RefuseIncomplete(id, form, arguments)
                                           : UseNumbers(id, form, arguments);
}

double CachedMode(ExcelData& data, DiscreteSetting setting) {
  StatisticCache& cache = data.statistics();
  const int from_zero = static_cast<int>(setting) + 1;
  const auto selector = static_cast<std::size_t>(from_zero);
  constexpr auto kIndex = static_cast<std::size_t>(StatisticId::kMode);
  if (!cache.Has(false, selector, kIndex)) {
    if (setting == DiscreteSetting::kUnknown) setting = SettingOf(data.Discreteness().forMode);
    cache.Set(false, selector, kIndex, Mode(data.SortedNumbers(), setting));
  }
  return cache.Get(false, selector, kIndex);
}

}  // namespace

#define ZAV_STATISTIC(name, id, form, incomplete)                                           \
  ZAV_EXPORT XLOPER12* name(ZAV_THIRTY_PARAMETERS) {                                        \
    return WorksheetFunction(#name, [&] {                                                   \
      return Describe(StatisticId::id, form, Incomplete::incomplete, ZAV_THIRTY_ARGUMENTS); \
    });                                                                                     \
  }

ZAV_STATISTIC(ZavrelMin, kMinimum, kOnlyForm, kUseNumbers)
ZAV_STATISTIC(ZavrelMinI, kMinimum, kOnlyForm, kRefuse)
ZAV_STATISTIC(ZavrelMax, kMaximum, kOnlyForm, kUseNumbers)
ZAV_STATISTIC(ZavrelMaxI, kMaximum, kOnlyForm, kRefuse)
ZAV_STATISTIC(ZavrelMean, kMean, kOnlyForm, kUseNumbers)
ZAV_STATISTIC(ZavrelMeanI, kMean, kOnlyForm, kRefuse)
ZAV_STATISTIC(ZavrelStdDev, kStdDev, Form::kSample, kUseNumbers)
ZAV_STATISTIC(ZavrelStdDevP, kStdDev, Form::kPopulation, kUseNumbers)
ZAV_STATISTIC(ZavrelVariance, kVariance, Form::kSample, kUseNumbers)
ZAV_STATISTIC(ZavrelVarianceP, kVariance, Form::kPopulation, kUseNumbers)
ZAV_STATISTIC(ZavrelSkewness, kSkewness, Form::kSample, kUseNumbers)
ZAV_STATISTIC(ZavrelSkewnessP, kSkewness, Form::kPopulation, kUseNumbers)
ZAV_STATISTIC(ZavrelKurtosis, kKurtosis, Form::kSample, kUseNumbers)
ZAV_STATISTIC(ZavrelKurtosisP, kKurtosis, Form::kPopulation, kUseNumbers)
ZAV_STATISTIC(ZavrelSum, kSum, kOnlyForm, kUseNumbers)
ZAV_STATISTIC(ZavrelSumI, kSum, kOnlyForm, kRefuse)
ZAV_STATISTIC(ZavrelProduct, kProduct, kOnlyForm, kUseNumbers)
ZAV_STATISTIC(ZavrelProductI, kProduct, kOnlyForm, kRefuse)
ZAV_STATISTIC(ZavrelRange, kRange, kOnlyForm, kUseNumbers)
ZAV_STATISTIC(ZavrelRangeI, kRange, kOnlyForm, kRefuse)
ZAV_STATISTIC(ZavrelCount, kCount, kOnlyForm, kUseNumbers)
ZAV_STATISTIC(ZavrelAveDev, kAveDev, kOnlyForm, kUseNumbers)
ZAV_STATISTIC(ZavrelSumSq, kSumSq, kOnlyForm, kUseNumbers)
ZAV_STATISTIC(ZavrelSumDevSq, kSumDevSq, kOnlyForm, kUseNumbers)
ZAV_STATISTIC(ZavrelMeanAbs, kMeanAbs, kOnlyForm, kUseNumbers)

/// The mode of the numbers, of discrete data (`discrete` other than 0) or of continuous (0); not
/// given, the data's ties decide (stats/mode.h). Without a number: #N/A.
ZAV_EXPORT XLOPER12* ZavrelMode(const XLOPER12* range, const XLOPER12* discrete) {
  return WorksheetFunction("ZavrelMode", [&] {
    const XLOPER12* const arguments[] = {range, discrete};
    const Parameters parameters = GetParameters("Rl", MissingDataPolicy::kNumbersOnly, arguments);
    if (!parameters.accepted()) return parameters.failure();
    auto setting = DiscreteSetting::kUnknown;
    if (parameters.given(1)) {
      setting = SettingOf(parameters.integer(1) != 0);
    }
    return ToExcelValue(CachedMode(parameters.data(0), setting));
  });
}

}  // namespace zavrel
