// The statistics of arrays as a macro asks for them.
#include <doctest/doctest.h>

#include <bit>
#include <functional>
#include <limits>
#include <utility>
#include <vector>

#include "macros/windows/vb_numbers.h"
#include "numbers/error_double.h"
#include "platform/export.h"
#include "support/macro_array.h"

namespace zavrel {
using Statistic = std::int16_t(SAFEARRAY** array, double* result);
ZAV_EXPORT Statistic ZavrelMinVB, ZavrelMaxVB, ZavrelMeanVB, ZavrelStdDevVB, ZavrelStdDevPVB,
    ZavrelVarianceVB, ZavrelVariancePVB, ZavrelSkewnessVB, ZavrelSkewnessPVB, ZavrelKurtosisVB,
    ZavrelKurtosisPVB, ZavrelSumSqVB, ZavrelSumDevSqVB;
ZAV_EXPORT std::int16_t ZavrelModeVB(SAFEARRAY**, std::int16_t, double*);
ZAV_EXPORT std::int16_t ZavrelPercentileVB(SAFEARRAY**, double, std::int16_t, double*);
ZAV_EXPORT std::int16_t ZavrelQuartileVB(SAFEARRAY**, double, std::int16_t, double*);
ZAV_EXPORT std::int16_t ZavrelMedianVB(SAFEARRAY**, std::int16_t, double*);
}  // namespace zavrel

namespace zavrel::tests {
namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

struct Answer {
  std::int16_t status;
  double result;
};
/// Any entry point, given all but the place for the result.
using Call = std::function<Statistic>;
Call Mode(std::int16_t discrete) {
  return [=](SAFEARRAY** x, double* result) { return ZavrelModeVB(x, discrete, result); };
}
Call Percentile(double p, std::int16_t method) {
  return [=](SAFEARRAY** x, double* result) { return ZavrelPercentileVB(x, p, method, result); };
}
Call Quartile(double q, std::int16_t method) {
  return [=](SAFEARRAY** x, double* result) { return ZavrelQuartileVB(x, q, method, result); };
}
Call Median(std::int16_t method) {
  return [=](SAFEARRAY** x, double* result) { return ZavrelMedianVB(x, method, result); };
}
Answer Ask(const Call& call, SAFEARRAY** x) {
  Answer answer{99, 99};
  answer.status = call(x, &answer.result);
  return answer;
}

const std::pair<Statistic*, double> kExpected[] = {
    {ZavrelMinVB, -4},
    {ZavrelMaxVB, 11},
    {ZavrelMeanVB, 3.21875},
    {ZavrelStdDevVB, 4.844801153224528},
    {ZavrelStdDevPVB, 4.531896505603366},
    {ZavrelVarianceVB, 23.472098214285715},
    {ZavrelVariancePVB, 20.5380859375},
    {ZavrelSkewnessVB, 0.11277000449461373},
    {ZavrelSkewnessPVB, 0.09041715435510045},
    {ZavrelKurtosisVB, 2.5334625019614103},
    {ZavrelKurtosisPVB, 2.1111726199816236},
    {ZavrelSumSqVB, 247.1875},
    {ZavrelSumDevSqVB, 164.3046875},
};

/// Every entry point there is.
std::vector<Call> AllCalls() {
  std::vector<Call> calls{Mode(-1), Percentile(0.6, 0), Quartile(3, 5), Median(-1)};
  for (const auto& [statistic, value] : kExpected) calls.emplace_back(statistic);
  return calls;
}

}  // namespace

TEST_CASE("each entry point gives its own statistic, of an array that is locked already too") {
  MacroArray array{2.5, -1.25, 7.0, 3.75, 0.5, 11.0, -4.0, 6.25};
  const SafeArrayLock held(array.array);
  for (const auto& [statistic, value] : kExpected) {
    const Answer answer = Ask(statistic, array);
    CHECK(answer.status == 0);
    CHECK(answer.result == doctest::Approx(value).epsilon(1e-14).scale(0));
  }
  CHECK(array.array->cLocks == 1);
}

TEST_CASE("mode and order statistics, and numbers that there are not") {
  MacroArray unsorted{7.0, 1.0, 6.0, 1.0, 5.0};  // stays so
  MacroArray sorted{15, 20, 35, 40, 50}, four{1, 2, 3, 4}, empty(VT_R8, {0}), one{3};
  MacroArray gaps{kNaN, 1, ConditionDouble(kConditionExcluded), 3, 3, -kNaN}, nothing{kNaN, kNaN};
  MacroArray endless{-kInfinity, 1, 2, kInfinity};
  const double none = ConditionDouble(kConditionNotComputed);
  const double no_data = ConditionDouble(kConditionNoData);
  const double too_few = ConditionDouble(kConditionTooFew);
  const double not_finite = ConditionDouble(kConditionNotFinite);
  const struct {
    SAFEARRAY** array;
    Call call;
    std::int16_t status;
    double expected;
  } cases[] = {{unsorted, Mode(-1), 0, 1},
               {unsorted, Mode(1), 0, 1},
               {unsorted, Mode(0), 0, 6},
               {unsorted, Median(0), 0, 6},
               {sorted, Percentile(0.4, 0), 0, 29},
               {sorted, Percentile(0.4, 1), 0, 20},
               {sorted, Percentile(0.4, 4), 0, 26},
               {sorted, Percentile(0.4, 5), 0, 27.5},
               {sorted, Median(-1), 0, 27.5},
               {sorted, Quartile(3, 0), 0, 40},
               {four, Quartile(2.5, 0), 1, none},
               {four, Quartile(-1, 0), 1, none},
               {four, Quartile(5, 0), 1, none},
               {four, Quartile(kNaN, 0), 1, none},
               {four, Quartile(kInfinity, 0), 1, none},
               {four, Quartile(1, -2), 0, none},
               {four, Percentile(-0.1, 0), 0, none},
               {four, Percentile(kInfinity, 0), 0, none},
               {four, Percentile(too_few, 0), 0, too_few},  // a code in place of p is passed on
               {four, Median(6), 0, none},
               {empty, Median(0), 0, none},
               {empty, Percentile(0.5, -1), 0, none},
               {empty, ZavrelMeanVB, kNoNumberStatus, no_data},
               {empty, Mode(-1), kNoNumberStatus, no_data},
               {empty, ZavrelSumSqVB, 0, 0},
               {one, ZavrelVarianceVB, kNoNumberStatus, too_few},
               {one, ZavrelVariancePVB, 0, 0},
               {gaps, ZavrelSumSqVB, kNoNumberStatus, not_finite},
               {gaps, ZavrelMeanVB, 0, 7.0 / 3},
               {gaps, Mode(-1), 0, 3},
               {nothing, ZavrelMaxVB, kNoNumberStatus, no_data},
               {nothing, Mode(0), kNoNumberStatus, no_data},
               {endless, ZavrelMeanVB, kNoNumberStatus, not_finite},
               {endless, ZavrelMinVB, kNoNumberStatus, -kInfinity},
               {endless, Mode(0), 0, 1.5},
               {endless, Median(0), 0, 1.5}};
  for (const auto& given : cases) {
    CAPTURE(&given - cases);
    const Answer answer = Ask(given.call, given.array);
    CHECK(answer.status == given.status);
    CHECK((std::bit_cast<std::uint64_t>(answer.result) ==
               std::bit_cast<std::uint64_t>(given.expected) ||
           answer.result == doctest::Approx(given.expected).epsilon(1e-15)));
  }
}

TEST_CASE("arrays that are not of that kind are refused, and nothing is written anywhere else") {
  MacroArray integers(VT_I4, {4}), dates(VT_DATE, {4}), variants(VT_VARIANT, {4});
  MacroArray table(VT_R8, {2, 2}), hollow = MacroArray::Hollow({3}), unallocated;
  MacroArray unlockable{1, 2, 3};
  unlockable.array->cLocks = 0xFFFF;
  const std::pair<const char*, SAFEARRAY**> arrays[] = {
      {"no place", nullptr},    {"unallocated", unallocated},
      {"integers", integers},   {"dates", dates},
      {"variants", variants},   {"a table", table},
      {"without data", hollow}, {"locked to the limit", unlockable}};
  for (const auto& [what, array] : arrays) {
    CAPTURE(what);
    for (const Call& call : AllCalls()) {
      const Answer answer = Ask(call, array);
      CHECK(answer.status == kNoNumberStatus);
      CHECK(HasCondition(answer.result, kConditionNotComputed));
    }
  }
  unlockable.array->cLocks = 0;
}

TEST_CASE("the place for the result may be an element of the array itself, or none") {
  for (const Call& call : AllCalls()) {
    MacroArray array{1, 2, 2, 5, 9};
    CHECK(call(array, nullptr) == kNoNumberStatus);
    const Answer apart = Ask(call, array);
    double& element = array.elements<double>()[2];
    CHECK(call(array, &element) == apart.status);
    CHECK(element == apart.result);
  }
}

}  // namespace zavrel::tests
