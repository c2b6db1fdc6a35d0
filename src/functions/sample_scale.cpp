#include "functions/sample_scale.h"

#include <cmath>

#include "excel/double_value.h"
#include "functions/cached_statistic.h"

namespace zavrel {

std::variant<SampleScale, XXloper> SampleScaleOf(ExcelData& data) {
  const SampleScale scale{CachedStatistic(data, StatisticId::kMean, Form::kSample),
                          CachedStatistic(data, StatisticId::kStdDev, Form::kSample)};
  for (const double statistic : {scale.mean, scale.standard_deviation})
    if (std::isnan(statistic)) return ToExcelValue(statistic);
  const std::span<const double> sorted = data.SortedNumbers();
  // Asked of the values too: the rounding of the mean gives equal ones deviations from it.
  if (scale.standard_deviation == 0 || sorted.front() == sorted.back())
    return XXloper::Error(ExcelError::kDiv0);
  return scale;
}

}  // namespace zavrel
