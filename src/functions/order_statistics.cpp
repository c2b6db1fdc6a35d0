// The order statistics of one data set: ZavPercentile, ZavQuartile, ZavMedian.
//
// The last argument of each is a percentile method, -1 if not given; stats/target.h gives the
// textbook definition for each code.
#include <cmath>

#include "frame/worksheet_function.h"
#include "functions/percentile.h"
#include "platform/export.h"
#include "stats/target.h"

namespace zavrel {
namespace {

constexpr Reading kDataNumberMethod("RDl", MissingDataPolicy::kNumbersOnly);
constexpr Reading kDataMethod("Rl", MissingDataPolicy::kNumbersOnly);

std::int32_t MethodAt(std::size_t position, const Parameters& read) {
  return read.integer_or(position, Stats::kFirstPercentileMethod);
}

}  // namespace

/// The percentile of the numbers at probability p. #VALUE! for a p outside 0..1, an unknown method,
/// and data without a number.
ZAV_EXPORT XLOPER12* ZavrelPercentile(const XLOPER12* range, const XLOPER12* p,
                                      const XLOPER12* method) {
  return WorksheetFunction("ZavrelPercentile", kDataNumberMethod, {range, p, method},
                           [](const Parameters& read) {
                             return PercentileOf(read.data(0), read.number(1), MethodAt(2, read));
                           });
}

/// The minimum, the first quartile, the median, the third quartile or the maximum, for the quartile
/// numbers 0 to 4. #VALUE! for any other number, whole or not, and for what ZavPercentile refuses.
ZAV_EXPORT XLOPER12* ZavrelQuartile(const XLOPER12* range, const XLOPER12* quartile,
                                    const XLOPER12* method) {
  return WorksheetFunction("ZavrelQuartile", kDataNumberMethod, {range, quartile, method},
                           [](const Parameters& read) -> CellResult {
                             const double number = read.number(1);
                             if (number != std::floor(number) || number < 0 || number > 4)
                               return Failure(ExcelError::kValue);
                             return PercentileOf(read.data(0), number / 4, MethodAt(2, read));
                           });
}

/// The median: the percentile at p = 0.5, with the errors of ZavPercentile.
ZAV_EXPORT XLOPER12* ZavrelMedian(const XLOPER12* range, const XLOPER12* method) {
  return WorksheetFunction(
      "ZavrelMedian", kDataMethod, {range, method},
      [](const Parameters& read) { return PercentileOf(read.data(0), 0.5, MethodAt(1, read)); });
}

}  // namespace zavrel
