// The summary statistics of an array, for macros: ZavrelMinVB ... ZavrelModeVB.
//
// Each returns 0 if the result is an ordinary number. Otherwise it returns -11005, and the result
// holds the code for the reason (numbers/error_double.h), the not-computed code for an array that
// cannot be read. Without a place for the result it only returns -11005.
#include <algorithm>
#include <cmath>

#include "bindings/target_computation.h"
#include "frame/macro_call.h"
#include "macros/macro_memory.h"
#include "macros/windows/vb_numbers.h"
#include "numbers/error_double.h"
#include "platform/export.h"
#include "stats/mode.h"
#include "stats/moment_block.h"
#include "stats/single_statistics.h"
#include "stats/sort_ascending.h"
#include "stats/statistic_id.h"

namespace zavrel {
namespace {

using Numbers = std::span<const double>;

/// The frame of every function; `compute` makes the result from the array's numbers.
template <class Compute>
std::int16_t OfArray(const char* name, SAFEARRAY** array, double* result,
                     Compute compute) noexcept {
  return MacroStatus(name, kNoNumberStatus, [&]() -> std::int16_t {
    if (!IsPlaceFor(result)) return kNoNumberStatus;
    // Written last: the result may be one of the array's own elements.
    const VbNumbers numbers(array);
    *result = numbers.ok() ? compute(numbers.values()) : ConditionDouble(kConditionNotComputed);
    return numbers.ok() && !IsErrorCoded(*result) ? std::int16_t{0} : kNoNumberStatus;
  });
}

/// NaNs are left out, as they are in the moments.
double ModeOfUnsorted(Numbers numbers, DiscreteSetting setting) {
  const auto copy = TryCopy(numbers);
  if (copy == nullptr) return ConditionDouble(kConditionNotComputed);
  const double* end = std::remove_if(copy.get(), copy.get() + numbers.size(),
                                     [](double number) { return std::isnan(number); });
  const std::span<double> values(copy.get(), static_cast<std::size_t>(end - copy.get()));
  SortAscending(values);
  return Mode(values, setting);
}

}  // namespace

#define ZAV_STATISTIC_VB(name, computation)                               \
  ZAV_EXPORT std::int16_t name(SAFEARRAY** array, double* result) {       \
    return OfArray(#name, array, result, [](Numbers x) { computation; }); \
  }
#define ZAV_MOMENT_VB(name, id, form) \
  ZAV_STATISTIC_VB(name, return ComputeMoments(x, form)[StatisticId::id])
#define ZAV_SINGLE_VB(name, id) ZAV_STATISTIC_VB(name, return SingleStatistic(StatisticId::id, x))

ZAV_MOMENT_VB(ZavrelMinVB, kMinimum, kOnlyForm)
ZAV_MOMENT_VB(ZavrelMaxVB, kMaximum, kOnlyForm)
ZAV_MOMENT_VB(ZavrelMeanVB, kMean, kOnlyForm)
ZAV_MOMENT_VB(ZavrelStdDevVB, kStdDev, Form::kSample)
ZAV_MOMENT_VB(ZavrelStdDevPVB, kStdDev, Form::kPopulation)
ZAV_MOMENT_VB(ZavrelVarianceVB, kVariance, Form::kSample)
ZAV_MOMENT_VB(ZavrelVariancePVB, kVariance, Form::kPopulation)
ZAV_MOMENT_VB(ZavrelSkewnessVB, kSkewness, Form::kSample)
ZAV_MOMENT_VB(ZavrelSkewnessPVB, kSkewness, Form::kPopulation)
ZAV_MOMENT_VB(ZavrelKurtosisVB, kKurtosis, Form::kSample)
ZAV_MOMENT_VB(ZavrelKurtosisPVB, kKurtosis, Form::kPopulation)
ZAV_SINGLE_VB(ZavrelSumSqVB, kSumSq)
ZAV_SINGLE_VB(ZavrelSumDevSqVB, kSumDevSq)

/// `discrete` is -1 for not given (as a macro's True is), so that the ties in the data decide, 0
/// for continuous data, anything else for discrete data.
ZAV_EXPORT std::int16_t ZavrelModeVB(SAFEARRAY** array, std::int16_t discrete, double* result) {
  const DiscreteSetting setting = discrete == -1  ? DiscreteSetting::kUnknown
                                  : discrete == 0 ? DiscreteSetting::kContinuous
                                                  : DiscreteSetting::kDiscrete;
  return OfArray("ZavrelModeVB", array, result,
                 [setting](Numbers x) { return ModeOfUnsorted(x, setting); });
}

}  // namespace zavrel
