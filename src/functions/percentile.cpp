#include "functions/percentile.h"

#include <optional>
#include <span>

#include "bindings/target_computation.h"
#include "stats/target.h"

namespace zavrel {

OrFailure<double> PercentileOf(ExcelData& data, double p, std::int32_t method) {
  if (method < Stats::kFirstPercentileMethod || method > Stats::kLastPercentileMethod)
    return Failure(ExcelError::kValue);
  const std::span<const double> sorted = data.SortedNumbers();
  if (sorted.empty()) return Failure(ExcelError::kValue);
  const bool automatic = method == static_cast<int>(Stats::PercentileMethod::kAutomatic);
  const std::optional<double> percentile = PercentileOfSorted(
      sorted, p, static_cast<std::int16_t>(method),
      automatic ? SettingOf(data.Discreteness().forPercentile) : DiscreteSetting::kUnknown);
  if (!percentile) return Failure(ExcelError::kValue);
  return *percentile;
}

}  // namespace zavrel
