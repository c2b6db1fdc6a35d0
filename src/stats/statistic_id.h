#pragma once

#include <cstddef>

namespace zavrel {

/// The single-variable statistics. The order is fixed: it indexes the result cache. A new one goes
/// just before kEnd.
enum class StatisticId : std::size_t {
  kMinimum = 0,
  kMaximum = 1,
  kMean = 2,
  kStdDev = 3,
  kVariance = 4,
  kSkewness = 5,
  kKurtosis = 6,
  kSum = 7,
  kProduct = 8,
  kRange = 9,
  kCount = 10,
  kAveDev = 11,    // mean absolute deviation from the mean
  kSumSq = 12,     // sum of squares
  kSumDevSq = 13,  // sum of squared deviations from the mean
  kMeanAbs = 14,   // mean of absolute values
  kMode = 15,
  kEnd,
};

/// The two forms of a statistic: of a whole population (divisor n), or of a sample from a
/// population (divisor n - 1).
enum class Form : bool { kPopulation, kSample };
/// For a statistic without forms.
inline constexpr Form kOnlyForm = Form::kPopulation;

/// The statistics that one run over the data computes together.
constexpr bool IsMoment(StatisticId id) { return id <= StatisticId::kKurtosis; }

}  // namespace zavrel
