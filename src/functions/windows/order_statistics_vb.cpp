// The order statistics of an array, for macros: ZavrelPercentileVB, ZavrelQuartileVB,
// ZavrelMedianVB.
//
// The array must be in ascending order; it is not sorted here. With method -1 the data decide;
// stats/target.h lists the others.
//
// Each returns
//   0        done. The result is the percentile, or the not-computed code, all bits set, if there
//            is none (p outside 0..1, an unknown method, no elements). A p that is NaN, such as the
//            code of an earlier failure, is returned as it is.
//   1        the quartile number is not 0, 1, 2, 3 or 4
//   12       out of memory
//   -11005   the array cannot be read, or there is no place for the result
// and leaves the not-computed code in the result if it does not return 0.
#include <cmath>

#include "bindings/target_computation.h"
#include "frame/macro_call.h"
#include "macros/macro_memory.h"
#include "macros/windows/vb_numbers.h"
#include "numbers/error_double.h"
#include "platform/export.h"

namespace zavrel {
namespace {

constexpr std::int16_t kDone = 0;
constexpr std::int16_t kInvalidQuartile = 1;
constexpr std::int16_t kOutOfMemory = 12;

double PercentileOrCode(std::span<const double> numbers, double p, std::int16_t method) {
  if (std::isnan(p)) return p;
  constexpr double kNotComputed = ConditionDouble(kConditionNotComputed);
  if (numbers.empty()) return kNotComputed;
  return PercentileOfSorted(numbers, p, method).value_or(kNotComputed);
}

template <class Check>
std::int16_t Compute(const VbNumbers& numbers, double p, std::int16_t method, Check check,
                     double& result) {
  if (!numbers.ok()) return kNoNumberStatus;
  // Macros expect a status of its own if there is no memory for a working copy, although the result
  // comes from the array itself. Nothing reads the copy, so it is not sorted.
  if (TryCopy(numbers.values()) == nullptr) return kOutOfMemory;
  if (const std::int16_t status = check(); status != kDone) return status;
  result = PercentileOrCode(numbers.values(), p, method);
  return kDone;
}

/// The frame of every function. `check` returns kDone if the other arguments are valid, else a
/// status.
template <class Check>
std::int16_t OfArray(const char* name, SAFEARRAY** array, double p, std::int16_t method,
                     double* result, Check check) noexcept {
  return MacroStatus(name, kNoNumberStatus, [&]() -> std::int16_t {
    if (!IsPlaceFor(result)) return kNoNumberStatus;
    // Written last: the result may be one of the array's own elements.
    double computed = ConditionDouble(kConditionNotComputed);
    const std::int16_t status = Compute(VbNumbers(array), p, method, check, computed);
    *result = computed;
    return status;
  });
}

std::int16_t Always() { return kDone; }

}  // namespace

/// The percentile at probability p.
ZAV_EXPORT std::int16_t ZavrelPercentileVB(SAFEARRAY** array, double p, std::int16_t method,
                                           double* result) {
  return OfArray("ZavrelPercentileVB", array, p, method, result, Always);
}

/// The minimum, the first quartile, the median, the third quartile or the maximum, for the quartile
/// numbers 0 to 4.
ZAV_EXPORT std::int16_t ZavrelQuartileVB(SAFEARRAY** array, double quartile, std::int16_t method,
                                         double* result) {
  return OfArray("ZavrelQuartileVB", array, quartile / 4, method, result, [quartile] {
    // A NaN fails the comparisons.
    const bool valid = quartile == std::floor(quartile) && quartile >= 0 && quartile <= 4;
    return valid ? kDone : kInvalidQuartile;
  });
}

/// The median: the percentile at p = 0.5.
ZAV_EXPORT std::int16_t ZavrelMedianVB(SAFEARRAY** array, std::int16_t method, double* result) {
  return OfArray("ZavrelMedianVB", array, 0.5, method, result, Always);
}

}  // namespace zavrel
