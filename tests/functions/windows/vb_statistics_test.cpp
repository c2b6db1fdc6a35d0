// The statistics of arrays as a macro asks for them.
#include <doctest/doctest.h>

#include <cmath>
#include <limits>
#include <utility>
#include <vector>

#include "macros/windows/vb_numbers.h"
#include "numbers/error_double.h"
#include "platform/export.h"

namespace zavrel {
#define ZAV_DECLARE(name) ZAV_EXPORT std::int16_t name(SAFEARRAY** array, double* result)
ZAV_DECLARE(ZavrelMinVB);
ZAV_DECLARE(ZavrelMaxVB);
ZAV_DECLARE(ZavrelMeanVB);
ZAV_DECLARE(ZavrelStdDevVB);
ZAV_DECLARE(ZavrelStdDevPVB);
ZAV_DECLARE(ZavrelVarianceVB);
ZAV_DECLARE(ZavrelVariancePVB);
ZAV_DECLARE(ZavrelSkewnessVB);
ZAV_DECLARE(ZavrelSkewnessPVB);
ZAV_DECLARE(ZavrelKurtosisVB);
ZAV_DECLARE(ZavrelKurtosisPVB);
ZAV_DECLARE(ZavrelSumSqVB);
ZAV_DECLARE(ZavrelSumDevSqVB);
#undef ZAV_DECLARE
ZAV_EXPORT std::int16_t ZavrelModeVB(SAFEARRAY**, std::int16_t, double*);
ZAV_EXPORT std::int16_t ZavrelPercentileVB(SAFEARRAY**, double, std::int16_t, double*);
ZAV_EXPORT std::int16_t ZavrelQuartileVB(SAFEARRAY**, double, std::int16_t, double*);
ZAV_EXPORT std::int16_t ZavrelMedianVB(SAFEARRAY**, std::int16_t, double*);
}  // namespace zavrel

namespace zavrel::tests {
namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

/// An array of a macro's.
class MacroArray {
 public:
  MacroArray(const std::vector<double>& values)  // NOLINT(google-explicit-constructor)
      : MacroArray(VT_R8, {static_cast<ULONG>(values.size())}) {
    std::copy(values.begin(), values.end(), static_cast<double*>(array_->pvData));
  }
  MacroArray(VARTYPE type, std::vector<ULONG> sizes) {
    std::vector<SAFEARRAYBOUND> bounds;
    for (const ULONG size : sizes) bounds.push_back({size, 1});
    array_ = SafeArrayCreate(type, static_cast<UINT>(bounds.size()), bounds.data());
    REQUIRE(array_ != nullptr);
  }
  MacroArray(const MacroArray&) = delete;
  MacroArray& operator=(const MacroArray&) = delete;
  ~MacroArray() {
    CHECK(array_->cLocks == 0);  // whoever locked it let go of it
    SafeArrayDestroy(array_);
  }

  SAFEARRAY* get() { return array_; }
  operator SAFEARRAY**() { return &array_; }  // NOLINT(google-explicit-constructor)

 private:
  SAFEARRAY* array_ = nullptr;
};

struct Answer {
  std::int16_t status;
  double result;
};
bool HoldsCode(const Answer& answer, std::int64_t condition) {
  return answer.status == kNoNumberStatus && HasCondition(answer.result, condition);
}

template <class Call>
Answer AnswerOf(Call call) {
  Answer answer{99, 99};
  answer.status = call(&answer.result);
  return answer;
}

using Statistic = std::int16_t (*)(SAFEARRAY**, double*);
Answer Ask(Statistic statistic, SAFEARRAY** x) {
  return AnswerOf([=](double* result) { return statistic(x, result); });
}
Answer Mode(SAFEARRAY** x, std::int16_t discrete) {
  return AnswerOf([=](double* result) { return ZavrelModeVB(x, discrete, result); });
}
Answer Percentile(SAFEARRAY** x, double p, std::int16_t method) {
  return AnswerOf([=](double* result) { return ZavrelPercentileVB(x, p, method, result); });
}
Answer Quartile(SAFEARRAY** x, double quartile, std::int16_t method) {
  return AnswerOf([=](double* result) { return ZavrelQuartileVB(x, quartile, method, result); });
}
Answer Median(SAFEARRAY** x, std::int16_t method) {
  return AnswerOf([=](double* result) { return ZavrelMedianVB(x, method, result); });
}

const std::pair<Statistic, double> kExpected[] = {
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

/// Every entry point over this array.
std::vector<Answer> AskAll(SAFEARRAY** array) {
  std::vector<Answer> answers;
  for (const auto& [statistic, value] : kExpected) answers.push_back(Ask(statistic, array));
  answers.push_back(Mode(array, -1));
  answers.push_back(Percentile(array, 0.5, 0));
  answers.push_back(Quartile(array, 1, 0));
  answers.push_back(Median(array, 0));
  return answers;
}

}  // namespace

TEST_CASE("each entry point gives its own statistic, of an array that is locked already too") {
  MacroArray array({2.5, -1.25, 7.0, 3.75, 0.5, 11.0, -4.0, 6.25});
  const SafeArrayLock held(array.get());
  for (const auto& [statistic, value] : kExpected) {
    const Answer answer = Ask(statistic, array);
    CHECK(answer.status == 0);
    CHECK(answer.result == doctest::Approx(value).epsilon(1e-14).scale(0));
  }
  CHECK(array.get()->cLocks == 1);
}

TEST_CASE("mode and order statistics") {
  MacroArray unsorted({7.0, 1.0, 6.0, 1.0, 5.0});
  CHECK(Mode(unsorted, -1).result == 1);
  CHECK(Mode(unsorted, 1).result == 1);
  CHECK(Mode(unsorted, 0).result == 6);
  CHECK(Mode(unsorted, 0).status == 0);
  CHECK(Median(unsorted, 0).result == 6);  // the array is as it was, and taken as it is

  MacroArray sorted({15, 20, 35, 40, 50});
  const double at_two_fifths[] = {29, 20, 20, 20, 26, 27.5};
  for (std::int16_t method = 0; method <= 5; ++method) {
    const Answer answer = Percentile(sorted, 0.4, method);
    CHECK(answer.status == 0);
    CHECK(answer.result == doctest::Approx(at_two_fifths[method]));
  }
  CHECK(Median(sorted, -1).result == 27.5);
  CHECK(Quartile(sorted, 3, 0).result == 40);
}

TEST_CASE("what an order statistic cannot be made of") {
  MacroArray array({1, 2, 3, 4});
  for (const double quartile : {2.5, -1.0, 5.0, kNaN, kInfinity}) {
    const Answer answer = Quartile(array, quartile, 0);
    CHECK(answer.status == 1);
    CHECK(HasCondition(answer.result, kConditionNotComputed));
  }
  MacroArray empty{std::vector<double>{}};
  const Answer not_computed[] = {Percentile(array, -0.1, 0), Percentile(array, kInfinity, 0),
                                 Median(array, 6),           Quartile(array, 1, -2),
                                 Median(empty, 0),           Percentile(empty, 0.5, -1)};
  for (const Answer& answer : not_computed) {
    CHECK(answer.status == 0);
    CHECK(HasCondition(answer.result, kConditionNotComputed));
  }
  // A code in place of p is passed on.
  const Answer passed_on = Percentile(array, ConditionDouble(kConditionTooFew), 0);
  CHECK(passed_on.status == 0);
  CHECK(HasCondition(passed_on.result, kConditionTooFew));
}

TEST_CASE("no numbers, and values that are none") {
  MacroArray empty{std::vector<double>{}};
  CHECK(HoldsCode(Ask(ZavrelMeanVB, empty), kConditionNoData));
  CHECK(HoldsCode(Mode(empty, -1), kConditionNoData));
  CHECK(Ask(ZavrelSumSqVB, empty).status == 0);
  CHECK(Ask(ZavrelSumSqVB, empty).result == 0);
  MacroArray one({3});
  CHECK(HoldsCode(Ask(ZavrelVarianceVB, one), kConditionTooFew));
  CHECK(Ask(ZavrelVariancePVB, one).status == 0);

  MacroArray gaps({kNaN, 1, ConditionDouble(kConditionExcluded), 3, 3, -kNaN});
  CHECK(Ask(ZavrelMeanVB, gaps).result == doctest::Approx(7.0 / 3));
  CHECK(Mode(gaps, -1).result == 3);
  CHECK(HoldsCode(Ask(ZavrelSumSqVB, gaps), kConditionNotFinite));
  MacroArray nothing({kNaN, kNaN});
  CHECK(HoldsCode(Ask(ZavrelMaxVB, nothing), kConditionNoData));
  CHECK(HoldsCode(Mode(nothing, 0), kConditionNoData));

  MacroArray endless({-kInfinity, 1, 2, kInfinity});
  CHECK(HoldsCode(Ask(ZavrelMeanVB, endless), kConditionNotFinite));
  const Answer minimum = Ask(ZavrelMinVB, endless);
  CHECK(minimum.status == kNoNumberStatus);
  CHECK(minimum.result == -kInfinity);
  CHECK(Mode(endless, 0).result == 1.5);
  CHECK(Median(endless, 0).result == 1.5);
}

TEST_CASE("arrays that are not of that kind are refused, and nothing is written anywhere else") {
  MacroArray integers(VT_I4, {4});
  MacroArray dates(VT_DATE, {4});
  MacroArray variants(VT_VARIANT, {4});
  MacroArray table(VT_R8, {2, 2});
  MacroArray unlockable({1, 2, 3});
  unlockable.get()->cLocks = 0xFFFF;
  MacroArray dataless({1, 2, 3});
  void* const data = std::exchange(dataless.get()->pvData, nullptr);
  SAFEARRAY* unallocated = nullptr;
  const std::pair<const char*, SAFEARRAY**> arrays[] = {
      {"no place", nullptr},      {"unallocated", &unallocated},
      {"integers", integers},     {"dates", dates},
      {"variants", variants},     {"a table", table},
      {"without data", dataless}, {"locked to the limit", unlockable}};
  for (const auto& [what, array] : arrays) {
    CAPTURE(what);
    for (const Answer& answer : AskAll(array)) CHECK(HoldsCode(answer, kConditionNotComputed));
  }
  unlockable.get()->cLocks = 0;
  dataless.get()->pvData = data;
}

TEST_CASE("the place for the result may be an element of the array itself") {
  const auto into_array = [](auto call) {
    MacroArray array({1, 2, 2, 5, 9});
    const Answer apart = AnswerOf([&](double* result) { return call(array, result); });
    double& element = static_cast<double*>(array.get()->pvData)[2];
    CHECK(call(array, &element) == apart.status);
    CHECK(element == apart.result);
  };
  for (const auto& [statistic, value] : kExpected) into_array(statistic);
  into_array([](SAFEARRAY** x, double* result) { return ZavrelModeVB(x, -1, result); });
  into_array([](SAFEARRAY** x, double* result) { return ZavrelPercentileVB(x, 0.6, 0, result); });
  into_array([](SAFEARRAY** x, double* result) { return ZavrelQuartileVB(x, 3, 5, result); });
  into_array([](SAFEARRAY** x, double* result) { return ZavrelMedianVB(x, -1, result); });
}

TEST_CASE("without a place for the result nothing happens") {
  MacroArray array({1, 2, 3});
  for (const auto& [statistic, value] : kExpected)
    CHECK(statistic(array, nullptr) == kNoNumberStatus);
  CHECK(ZavrelModeVB(array, -1, nullptr) == kNoNumberStatus);
  CHECK(ZavrelPercentileVB(array, 0.5, 0, nullptr) == kNoNumberStatus);
  CHECK(ZavrelQuartileVB(array, 7, 0, nullptr) == kNoNumberStatus);
  CHECK(ZavrelMedianVB(array, 0, nullptr) == kNoNumberStatus);
}

}  // namespace zavrel::tests
