// Variables made from others: ZavStandardize, ZavLn, ZavPower, ZavLog, ZavDummy.
//
// A function of a range gives one column with a cell for each cell of the range, in its order (of
// whole columns and rows, of the used part). A failure affects only its own cell.
#include <cmath>

#include "frame/macro_call.h"
#include "frame/worksheet_function.h"
#include "functions/indicator.h"
#include "functions/result_column.h"
#include "macros/macro_memory.h"
#include "macros/macro_status.h"
#include "numbers/floating_point_scope.h"
#include "platform/export.h"
#include "stats/standardize.h"

namespace zavrel {
namespace {

constexpr Reading kRangeAndNumber("RD", MissingDataPolicy::kPositional);

/// The column of of_number(x) for each number x of the range in the first argument.
template <class OfNumber>
XXloper EachNumber(const Parameters& read, OfNumber of_number) {
  const CellColumns& cells = read.data(0).cells();
  return ResultColumn(cells.size(), [&](std::size_t row) {
    const SingleValue cell = cells[row];
    return cell.IsNumber() ? of_number(cell.number) : WithoutNumber(cell);
  });
}

}  // namespace

/// (x - mean) / standard deviation. A standard deviation of 0: #DIV/0!; overflow: #NUM!.
ZAV_EXPORT XLOPER12* ZavrelStandardize(const XLOPER12* x, const XLOPER12* mean,
                                       const XLOPER12* standard_deviation) {
  return WorksheetFunction("ZavrelStandardize", Reading("DDD"), {x, mean, standard_deviation},
                           [](const Parameters& read) -> CellResult {
                             const Standardized standardized =
                                 Standardize(read.number(0), read.number(1), read.number(2));
                             switch (standardized.status) {
                               case StandardizeStatus::kGiven:
                                 return XXloper::Number(standardized.value);
                               case StandardizeStatus::kNoSpread:
                                 return Failure(ExcelError::kDiv0);
                               case StandardizeStatus::kOverflow:
                                 break;
                             }
                             return Failure(ExcelError::kNum);
                           });
}

/// The same for macros: stores the quotient in `result`, whatever it is. Returns 0, 10 for a
/// standard deviation of 0, 4 for an overflow, -11005 without a place for the result.
ZAV_EXPORT std::int16_t ZavrelStandardizeVB(double x, double mean, double standard_deviation,
                                            double* result) {
  return MacroStatus("ZavrelStandardizeVB", kNoNumberStatus, [&]() -> std::int16_t {
    if (!IsPlaceFor(result)) return kNoNumberStatus;
    const Standardized standardized = Standardize(x, mean, standard_deviation);
    *result = standardized.value;
    return static_cast<std::int16_t>(standardized.status);
  });
}

/// The natural logarithm of x. x <= 0: #NUM!.
ZAV_EXPORT XLOPER12* ZavrelLn(const XLOPER12* x) {
  return WorksheetFunction("ZavrelLn", Reading("D"), {x}, [](const Parameters& read) -> CellResult {
    if (read.number(0) <= 0) return Failure(ExcelError::kNum);
    const FloatingPointScope environment;
    return XXloper::Number(Settled(std::log(read.number(0))));
  });
}

/// Each number of the range raised to the exponent. A power that is not finite: #NUM!.
ZAV_EXPORT XLOPER12* ZavrelPower(const XLOPER12* range, const XLOPER12* exponent) {
  return WorksheetFunction(
      "ZavrelPower", kRangeAndNumber, {range, exponent}, [](const Parameters& read) {
        return EachNumber(
            read, [e = read.number(1)](double x) { return VariableCell::Number(std::pow(x, e)); });
      });
}

/// The logarithm of each number of the range, as ln x / ln base. A negative base: #VALUE! for every
/// number; a quotient that is not finite (x <= 0, base 1): #NUM!. To base 0, whose logarithm is
/// infinite, every positive number has the logarithm 0.
ZAV_EXPORT XLOPER12* ZavrelLog(const XLOPER12* range, const XLOPER12* base) {
  return WorksheetFunction("ZavrelLog", kRangeAndNumber, {range, base}, [](const Parameters& read) {
    const FloatingPointScope environment;
    return EachNumber(read, [ln_base = std::log(read.number(1))](double x) {
      return std::isnan(ln_base) ? VariableCell::Error(xlerrValue)
                                 : VariableCell::Number(std::log(x) / ln_base);
    });
  });
}

/// The 0/1 variable of a category (functions/indicator.h). If the category is left out: 0.
ZAV_EXPORT XLOPER12* ZavrelDummy(const XLOPER12* range, const XLOPER12* category) {
  const bool has_category = !IsOmitted(category);
  const Reading reading(has_category ? "RS" : "R", MissingDataPolicy::kPositional);
  return WorksheetFunction(
      "ZavrelDummy", reading, {range, category}, [&](const Parameters& read) -> CellResult {
        if (!has_category) return 0.0;
        const CellColumns& cells = read.data(0).cells();
        Indicator indicator(read.text(1));
        return ResultColumnOrFailure(cells.size(),
                                     [&](std::size_t row) { return indicator.Of(cells[row]); });
      });
}

}  // namespace zavrel
