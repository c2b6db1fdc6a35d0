// The summary statistics of one data set: ZavMin ... ZavMode.
#include "frame/worksheet_function.h"
#include "functions/cached_statistic.h"
#include "platform/export.h"
#include "stats/mode.h"

namespace zavrel {
namespace {

/// Cells that do not hold a number are left out.
constexpr Reading kNumbers("V", MissingDataPolicy::kNumbersOnly);
/// Every cell must hold a number; a whole column counts as its used part. Instead of an error, for
/// whatever reason, the cell shows the empty text.
constexpr Reading kNothingButNumbers =
    Reading("V", MissingDataPolicy::kPositional).ShowingEmptyText();

struct Statistic {
  StatisticId id;
  Form form;

  double operator()(const Parameters& read) const {
    return CachedStatistic(read.data(0), id, form);
  }
};

struct StatisticOfNothingButNumbers {
  StatisticId id;

  CellResult operator()(const Parameters& read) const {
    ExcelData& data = read.data(0);
    if (data.size() == 0 || data.NumberCount() < data.size()) return Failure(ExcelError::kValue);
    return CachedStatistic(data, id, kOnlyForm);
  }
};

double CachedMode(ExcelData& data, DiscreteSetting setting) {
  StatisticCache& cache = data.statistics();
  const int from_zero = static_cast<int>(setting) + 1;
  const auto selector = static_cast<std::size_t>(from_zero);
  constexpr auto kIndex = static_cast<std::size_t>(StatisticId::kMode);
  if (!cache.Has(kOnlyForm, selector, kIndex)) {
    if (setting == DiscreteSetting::kUnknown) setting = SettingOf(data.Discreteness().forMode);
    cache.Set(kOnlyForm, selector, kIndex, Mode(data.SortedNumbers(), setting));
  }
  return cache.Get(kOnlyForm, selector, kIndex);
}

}  // namespace

#define ZAV_STATISTIC(name, id, form)                               \
  ZAV_EXPORT XLOPER12* name(ZAV_THIRTY_PARAMETERS) {                \
    return WorksheetFunction(#name, kNumbers, ZAV_THIRTY_ARGUMENTS, \
                             Statistic{StatisticId::id, form});     \
  }
// The I form of a statistic.
#define ZAV_STATISTIC_I(name, id)                                             \
  ZAV_EXPORT XLOPER12* name(ZAV_THIRTY_PARAMETERS) {                          \
    return WorksheetFunction(#name, kNothingButNumbers, ZAV_THIRTY_ARGUMENTS, \
                             StatisticOfNothingButNumbers{StatisticId::id});  \
  }

ZAV_STATISTIC(ZavrelMin, kMinimum, kOnlyForm)
ZAV_STATISTIC_I(ZavrelMinI, kMinimum)
ZAV_STATISTIC(ZavrelMax, kMaximum, kOnlyForm)
ZAV_STATISTIC_I(ZavrelMaxI, kMaximum)
ZAV_STATISTIC(ZavrelMean, kMean, kOnlyForm)
ZAV_STATISTIC_I(ZavrelMeanI, kMean)
ZAV_STATISTIC(ZavrelStdDev, kStdDev, Form::kSample)
ZAV_STATISTIC(ZavrelStdDevP, kStdDev, Form::kPopulation)
ZAV_STATISTIC(ZavrelVariance, kVariance, Form::kSample)
ZAV_STATISTIC(ZavrelVarianceP, kVariance, Form::kPopulation)
ZAV_STATISTIC(ZavrelSkewness, kSkewness, Form::kSample)
ZAV_STATISTIC(ZavrelSkewnessP, kSkewness, Form::kPopulation)
ZAV_STATISTIC(ZavrelKurtosis, kKurtosis, Form::kSample)
ZAV_STATISTIC(ZavrelKurtosisP, kKurtosis, Form::kPopulation)
ZAV_STATISTIC(ZavrelSum, kSum, kOnlyForm)
ZAV_STATISTIC_I(ZavrelSumI, kSum)
ZAV_STATISTIC(ZavrelProduct, kProduct, kOnlyForm)
ZAV_STATISTIC_I(ZavrelProductI, kProduct)
ZAV_STATISTIC(ZavrelRange, kRange, kOnlyForm)
ZAV_STATISTIC_I(ZavrelRangeI, kRange)
ZAV_STATISTIC(ZavrelCount, kCount, kOnlyForm)
ZAV_STATISTIC(ZavrelAveDev, kAveDev, kOnlyForm)
ZAV_STATISTIC(ZavrelSumSq, kSumSq, kOnlyForm)
ZAV_STATISTIC(ZavrelSumDevSq, kSumDevSq, kOnlyForm)
ZAV_STATISTIC(ZavrelMeanAbs, kMeanAbs, kOnlyForm)

/// The mode of the numbers, as discrete data (`discrete` other than 0) or continuous data (0). If
/// `discrete` is not given, the ties in the data decide (stats/mode.h). Data without a number:
/// #N/A.
ZAV_EXPORT XLOPER12* ZavrelMode(const XLOPER12* range, const XLOPER12* discrete) {
  return WorksheetFunction("ZavrelMode", Reading("Rl", MissingDataPolicy::kNumbersOnly),
                           {range, discrete}, [](const Parameters& read) {
                             return CachedMode(read.data(0), read.given(1)
                                                                 ? SettingOf(read.integer(1) != 0)
                                                                 : DiscreteSetting::kUnknown);
                           });
}

}  // namespace zavrel
