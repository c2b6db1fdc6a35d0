// The summary statistics of one data set: ZavMin ... ZavMode.
#include "addin/worksheet_function.h"
#include "data/get_parameters.h"
#include "diagnostics/log_line.h"
#include "excel/error_double.h"
#include "platform/export.h"
#include "stats/data_set_summary.h"
#include "stats/mode.h"
#include "stats/moment_block.h"
#include "stats/single_statistics.h"
#include "stats/statistic_id.h"

namespace zavrel {
namespace {

enum class Form : bool { kPopulation, kSample };
constexpr Form kOnly = Form::kPopulation;  // of a statistic that has no forms

/// What a function does about cells that hold no number.
enum class Incomplete : bool { kUseNumbers, kRefuse };

using Arguments = std::span<const XLOPER12* const>;

void ComputeInto(ExcelData& data, StatisticId id, Form form) {
  StatisticCache& cache = data.statistics();
  const std::span<const double> numbers = data.Numbers(MissingDataPolicy::kNumbersOnly);
  if (!IsMoment(id)) {
    cache.Set(form == Form::kSample, 0, static_cast<std::size_t>(id), SingleStatistic(id, numbers));
    return;
  }
  const MomentBlocks blocks = ComputeBothForms(numbers);
  if (EnabledLog() != nullptr) {
    LogLine("{}\n",
            SummaryOf(blocks.sample, data.size(), data.cells().count(CellTag::kError)).Text());
  }
  for (std::size_t i = 0; IsMoment(static_cast<StatisticId>(i)); ++i) {
    cache.Set(false, 0, i, blocks.population[static_cast<StatisticId>(i)]);
    cache.Set(true, 0, i, blocks.sample[static_cast<StatisticId>(i)]);
  }
}

// Computed from the numbers alone under either policy, since both share the cached result; that of
// incomplete data is then not asked for.
double CachedStatistic(ExcelData& data, StatisticId id, Form form) {
  StatisticCache& cache = data.statistics();
  const bool sample = form == Form::kSample;
  const auto index = static_cast<std::size_t>(id);
  if (!cache.Has(sample, 0, index)) ComputeInto(data, id, form);
  return cache.Get(sample, 0, index);
}

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
  const auto selector = static_cast<std::size_t>(static_cast<int>(setting) + 1);
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

ZAV_STATISTIC(ZavrelMin, kMinimum, kOnly, kUseNumbers)
ZAV_STATISTIC(ZavrelMinI, kMinimum, kOnly, kRefuse)
ZAV_STATISTIC(ZavrelMax, kMaximum, kOnly, kUseNumbers)
ZAV_STATISTIC(ZavrelMaxI, kMaximum, kOnly, kRefuse)
ZAV_STATISTIC(ZavrelMean, kMean, kOnly, kUseNumbers)
ZAV_STATISTIC(ZavrelMeanI, kMean, kOnly, kRefuse)
ZAV_STATISTIC(ZavrelStdDev, kStdDev, Form::kSample, kUseNumbers)
ZAV_STATISTIC(ZavrelStdDevP, kStdDev, Form::kPopulation, kUseNumbers)
ZAV_STATISTIC(ZavrelVariance, kVariance, Form::kSample, kUseNumbers)
ZAV_STATISTIC(ZavrelVarianceP, kVariance, Form::kPopulation, kUseNumbers)
ZAV_STATISTIC(ZavrelSkewness, kSkewness, Form::kSample, kUseNumbers)
ZAV_STATISTIC(ZavrelSkewnessP, kSkewness, Form::kPopulation, kUseNumbers)
ZAV_STATISTIC(ZavrelKurtosis, kKurtosis, Form::kSample, kUseNumbers)
ZAV_STATISTIC(ZavrelKurtosisP, kKurtosis, Form::kPopulation, kUseNumbers)
ZAV_STATISTIC(ZavrelSum, kSum, kOnly, kUseNumbers)
ZAV_STATISTIC(ZavrelSumI, kSum, kOnly, kRefuse)
ZAV_STATISTIC(ZavrelProduct, kProduct, kOnly, kUseNumbers)
ZAV_STATISTIC(ZavrelProductI, kProduct, kOnly, kRefuse)
ZAV_STATISTIC(ZavrelRange, kRange, kOnly, kUseNumbers)
ZAV_STATISTIC(ZavrelRangeI, kRange, kOnly, kRefuse)
ZAV_STATISTIC(ZavrelCount, kCount, kOnly, kUseNumbers)
ZAV_STATISTIC(ZavrelAveDev, kAveDev, kOnly, kUseNumbers)
ZAV_STATISTIC(ZavrelSumSq, kSumSq, kOnly, kUseNumbers)
ZAV_STATISTIC(ZavrelSumDevSq, kSumDevSq, kOnly, kUseNumbers)
ZAV_STATISTIC(ZavrelMeanAbs, kMeanAbs, kOnly, kUseNumbers)

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
