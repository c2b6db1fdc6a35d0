#include "functions/sample_scale.h"

#include <cmath>

#include "excel/double_value.h"
#include "functions/cached_statistic.h"

namespace zavrel {

OrFailure<SampleScale> SampleScaleOf(ExcelData& data) {
  const SampleScale scale{CachedStatistic(data, StatisticId::kMean, Form::kSample),
                          CachedStatistic(data, StatisticId::kStdDev, Form::kSample)};
  for (const double statistic : {scale.mean, scale.standard_deviation})
    if (std::isnan(statistic)) return Failure(ToExcelValue(statistic));
  const std::span<const double> sorted = data.SortedNumbers();
  // The deviation alone is not enough: with a rounded mean, equal values can have one.
  if (scale.standard_deviation == 0 || sorted.front() == sorted.back())
    return Failure(ExcelError::kDiv0);
  return scale;
}

}  // namespace zavrel
