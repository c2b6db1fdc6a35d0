// The order statistics of an array, for macros: ZavrelPercentileVB, ZavrelQuartileVB,
// ZavrelMedianVB.
//
// The array is expected to be in ascending order: it is used in the order that it has. A method of
// -1 leaves the choice to the data; stats/target.h lists the others.
//
// Each returns
//   0        done. The result is the percentile; the not-computed code, all bits set, when there is
//            none (p outside 0..1, a method that there is not, no elements); the p that was given
//            when that is a not-a-number, such as the code of an earlier failure.
//   1        the quartile number is not one of 0 to 4
//   12       out of memory
//   -11005   the array cannot be read, or there is no place for the result
// and leaves the not-computed code in the result whenever it does not return 0.
#include <cmath>

#include "bindings/target_computation.h"
#include "frame/macro_call.h"
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
  // The contract has a working copy and a status for want of its memory, yet what is computed from
  // is the array itself. Nothing reads the copy, so that it need not be sorted either.
  if (TryCopy(numbers.values()) == nullptr) return kOutOfMemory;
  if (const std::int16_t status = check(); status != kDone) return status;
  result = PercentileOrCode(numbers.values(), p, method);
  return kDone;
}

/// The frame of every member. `check` looks at the other arguments: kDone lets the computation
/// begin.
template <class Check>
std::int16_t OfArray(const char* name, SAFEARRAY** array, double p, std::int16_t method,
                     double* result, Check check) noexcept {
  return MacroStatus(name, kNoNumberStatus, [&]() -> std::int16_t {
    if (result == nullptr) return kNoNumberStatus;
    // Written last: the macro may have given one of the array's own elements.
    double computed = ConditionDouble(kConditionNotComputed);
    const std::int16_t status = Compute(VbNumbers(array), p, method, check, computed);
    *result = computed;
    return status;
  });
}

std::int16_t Always() { return kDone; }

}  // namespace

/// The p-th percentile.
ZAV_EXPORT std::int16_t ZavrelPercentileVB(SAFEARRAY** array, double p, std::int16_t method,
                                           double* result) {
  return OfArray("ZavrelPercentileVB", array, p, method, result, Always);
}

/// The minimum, the first quartile, the median, the third quartile or the maximum, by the quartile
/// numbers 0 to 4.
ZAV_EXPORT std::int16_t ZavrelQuartileVB(SAFEARRAY** array, double quartile, std::int16_t method,
                                         double* result) {
  return OfArray("ZavrelQuartileVB", array, quartile / 4, method, result, [quartile] {
    // A not-a-number equals nothing.
    const bool valid = quartile == std::floor(quartile) && quartile >= 0 && quartile <= 4;
    return valid ? kDone : kInvalidQuartile;
  });
}

/// The median: the percentile at p = 0.5.
ZAV_EXPORT std::int16_t ZavrelMedianVB(SAFEARRAY** array, std::int16_t method, double* result) {
  return OfArray("ZavrelMedianVB", array, 0.5, method, result, Always);
}

}  // namespace zavrel
