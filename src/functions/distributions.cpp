// The distributions: ZavNormal, ZavStudent, ZavChisq, ZavF, ZavBinomial, and the same for macros.
//
// Each gives one property, chosen by a selector (distribution_selector.h): a moment, the density or
// the probability of x, a tail at x or the x of a tail. If it cannot be computed, for any reason:
// #NUM!.
//
// A macro passes the selector as an index from 0, and the missing-value marker if it has no x. The
// result is
// - 0: done;
// - 1: no such property, no x for a property that needs it, df below 1 (Student, chi-square), no
//   place for the value, or no distribution companion;
// - others: the companion's code (contracts/pdflib.h).
//
// A value is stored only if the result is 0, with one exception: for a moment that does not exist,
// the result is its status, and the NaN that the companion gives for it is stored.
#include "functions/distributions.h"

#include <cmath>
#include <initializer_list>
#include <string_view>

#include "bindings/distribution_library.h"
#include "frame/macro_call.h"
#include "frame/worksheet_function.h"
#include "functions/distribution_selector.h"
#include "macros/macro_memory.h"
#include "numbers/error_double.h"
#include "platform/export.h"

namespace zavrel {
namespace {

constexpr std::int32_t kRefused = 1;

/// Room for the companion's answer.
struct Answer {
  double results[PDFLIB_MOMENT_COUNT] = {};
  std::int16_t status[PDFLIB_MOMENT_COUNT] = {};
};

/// Stores a property in `value`. `ask` calls the companion's function for the distribution with
/// (functions, request, answer) and returns its code.
template <class Ask>
std::int32_t Property(std::int32_t selector, double x, double* value, Ask ask) {
  constexpr auto kCount = static_cast<std::int32_t>(kDistributionProperties.size());
  if (selector < 0 || selector >= kCount) return kRefused;
  const auto& property = kDistributionProperties[static_cast<std::size_t>(selector)];
  if (property.needs_x() && x == kMissingValue) return kRefused;
  const DistributionFunctions* const functions = DistributionCompanion();
  if (functions == nullptr) return kRefused;
  Answer answer;
  const std::int16_t code = ask(*functions, property.request, answer);
  if (code != 0) return code;
  const double result = answer.results[property.moment];
  *value = property.root ? std::sqrt(result) : result;
  return property.needs_x() ? 0 : answer.status[property.moment];
}

std::int32_t StudentProperty(std::int32_t df, std::int32_t selector, double x, double* value) {
  if (df < 1) return kRefused;
  return Property(selector, x, value, [&](const auto& library, std::int16_t request, Answer& to) {
    return library.student(request, 0, df, x, to.results, to.status, nullptr);
  });
}

std::int32_t ChisqProperty(std::int32_t df, std::int32_t selector, double x, double* value) {
  if (df < 1) return kRefused;
  return Property(selector, x, value, [&](const auto& library, std::int16_t request, Answer& to) {
    return library.chisq(request, 0, df, x, to.results, to.status, nullptr);
  });
}

std::int32_t FProperty(std::int32_t df1, std::int32_t df2, std::int32_t selector, double x,
                       double* value) {
  return Property(selector, x, value, [&](const auto& library, std::int16_t request, Answer& to) {
    return library.f(request, 0, df1, df2, x, to.results, to.status, nullptr);
  });
}

std::int32_t BinomialProperty(std::int32_t n, double p, std::int32_t selector, double x,
                              double* value) {
  return Property(selector, x, value, [&](const auto& library, std::int16_t request, Answer& to) {
    return library.binomial(request, 0, n, p, x, to.results, to.status, nullptr);
  });
}

/// The body of the worksheet functions. `kinds` are the kinds of the distribution's parameters, the
/// selector and x; `compute` takes the arguments read, the selector's index, x and the place for
/// the value.
template <class Compute>
XLOPER12* PropertyFunction(const char* name, std::string_view kinds,
                           std::initializer_list<const XLOPER12*> arguments,
                           Compute compute) noexcept {
  return WorksheetFunction(
      name, Reading(kinds), arguments, [&](const Parameters& read) -> CellResult {
        const std::size_t x_position = kinds.size() - 1;
        const std::int32_t selector = SelectorIndex(read.text(x_position - 1));
        double value = 0;
        if (compute(read, selector, read.number_or(x_position, kMissingValue), &value) != 0)
          return Failure(ExcelError::kNum);
        return XXloper::Number(value);
      });
}

/// What `compute` returns, which stores a value at a macro's place.
template <class Compute>
std::int32_t ForMacro(const char* name, const double* place, Compute compute) noexcept {
  return MacroStatus(name, kRefused, [&] { return IsPlaceFor(place) ? compute() : kRefused; });
}

}  // namespace

std::int32_t NormalProperty(double mean, double standard_deviation, std::int32_t selector, double x,
                            double* value) {
  return Property(selector, x, value, [&](const auto& library, std::int16_t request, Answer& to) {
    return library.normal(request, 0, mean, standard_deviation, x, to.results, to.status, nullptr);
  });
}

/// The normal distribution by its mean and standard deviation.
ZAV_EXPORT XLOPER12* ZavrelNormal(const XLOPER12* mean, const XLOPER12* standard_deviation,
                                  const XLOPER12* selector, const XLOPER12* x) {
  return PropertyFunction(
      "ZavrelNormal", "DDSd", {mean, standard_deviation, selector, x},
      [](const Parameters& given, std::int32_t index, double at, double* value) {
        return NormalProperty(given.number(0), given.number(1), index, at, value);
      });
}

/// Student's t distribution.
ZAV_EXPORT XLOPER12* ZavrelStudent(const XLOPER12* df, const XLOPER12* selector,
                                   const XLOPER12* x) {
  return PropertyFunction(
      "ZavrelStudent", "LSd", {df, selector, x},
      [](const Parameters& given, std::int32_t index, double at, double* value) {
        return StudentProperty(given.integer(0), index, at, value);
      });
}

/// The chi-square distribution.
ZAV_EXPORT XLOPER12* ZavrelChisq(const XLOPER12* df, const XLOPER12* selector, const XLOPER12* x) {
  return PropertyFunction(
      "ZavrelChisq", "LSd", {df, selector, x},
      [](const Parameters& given, std::int32_t index, double at, double* value) {
        return ChisqProperty(given.integer(0), index, at, value);
      });
}

/// The F distribution by the degrees of freedom of its numerator and its denominator.
ZAV_EXPORT XLOPER12* ZavrelF(const XLOPER12* df1, const XLOPER12* df2, const XLOPER12* selector,
                             const XLOPER12* x) {
  return PropertyFunction(
      "ZavrelF", "LLSd", {df1, df2, selector, x},
      [](const Parameters& given, std::int32_t index, double at, double* value) {
        return FProperty(given.integer(0), given.integer(1), index, at, value);
      });
}

/// The binomial distribution: successes in n trials of probability p each.
ZAV_EXPORT XLOPER12* ZavrelBinomial(const XLOPER12* n, const XLOPER12* p, const XLOPER12* selector,
                                    const XLOPER12* x) {
  return PropertyFunction(
      "ZavrelBinomial", "LDSd", {n, p, selector, x},
      [](const Parameters& given, std::int32_t index, double at, double* value) {
        return BinomialProperty(given.integer(0), given.number(1), index, at, value);
      });
}

ZAV_EXPORT std::int32_t ZavrelNormalVB(double mean, double standard_deviation,
                                       std::int32_t selector, double x, double* value) {
  return ForMacro("ZavrelNormalVB", value,
                  [&] { return NormalProperty(mean, standard_deviation, selector, x, value); });
}

ZAV_EXPORT std::int32_t ZavrelStudentVB(std::int32_t df, std::int32_t selector, double x,
                                        double* value) {
  return ForMacro("ZavrelStudentVB", value,
                  [&] { return StudentProperty(df, selector, x, value); });
}

ZAV_EXPORT std::int32_t ZavrelChisqVB(std::int32_t df, std::int32_t selector, double x,
                                      double* value) {
  return ForMacro("ZavrelChisqVB", value, [&] { return ChisqProperty(df, selector, x, value); });
}

ZAV_EXPORT std::int32_t ZavrelFVB(std::int32_t df1, std::int32_t df2, std::int32_t selector,
                                  double x, double* value) {
  return ForMacro("ZavrelFVB", value, [&] { return FProperty(df1, df2, selector, x, value); });
}

ZAV_EXPORT std::int32_t ZavrelBinomialVB(std::int32_t n, double p, std::int32_t selector, double x,
                                         double* value) {
  return ForMacro("ZavrelBinomialVB", value,
                  [&] { return BinomialProperty(n, p, selector, x, value); });
}

}  // namespace zavrel
