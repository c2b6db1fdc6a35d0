// The studentized range: ZavStudentizedRangeDist, ZavStudentizedRangeInv.
#include "stats/studentized_range.h"

#include <array>

#include "data/get_parameters.h"
#include "frame/worksheet_function.h"
#include "platform/export.h"

namespace zavrel {
namespace {

using Computation = StudentizedRangeResult(double, std::int32_t, std::int32_t);

XXloper Compute(Computation* computation, const XLOPER12* argument, const XLOPER12* df,
                const XLOPER12* means) {
  const Parameters parameters =
      GetParameters("DLL", MissingDataPolicy::kNumbersOnly, std::array{argument, df, means});
  if (!parameters.accepted()) return parameters.failure();
  const StudentizedRangeResult result =
      computation(parameters.number(0), parameters.integer(1), parameters.integer(2));
  return result.failed ? XXloper::Error(ExcelError::kNum) : XXloper::Number(result.value);
}

}  // namespace

/// The probability that the range of `means` means does not exceed q standard errors estimated with
/// `df` degrees of freedom. df < 1 or means < 2: #NUM!.
ZAV_EXPORT XLOPER12* ZavrelStudentizedRangeDist(const XLOPER12* q, const XLOPER12* df,
                                                const XLOPER12* means) {
  return WorksheetFunction("ZavrelStudentizedRangeDist",
                           [&] { return Compute(StudentizedRangeProbability, q, df, means); });
}

/// The q with this probability. df < 1, means < 2, p < 0, p >= 1, or a p that no q comes close to:
/// #NUM!.
ZAV_EXPORT XLOPER12* ZavrelStudentizedRangeInv(const XLOPER12* p, const XLOPER12* df,
                                               const XLOPER12* means) {
  return WorksheetFunction("ZavrelStudentizedRangeInv",
                           [&] { return Compute(StudentizedRangeQuantile, p, df, means); });
}

}  // namespace zavrel
