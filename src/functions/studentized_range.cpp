// The studentized range: ZavStudentizedRangeDist, ZavStudentizedRangeInv.
#include "stats/studentized_range.h"

#include "frame/worksheet_function.h"
#include "platform/export.h"

namespace zavrel {
namespace {

constexpr Reading kValueDfMeans("DLL");

using Computation = StudentizedRangeResult(double, std::int32_t, std::int32_t);

CellResult Compute(Computation* computation, const Parameters& read) {
  const StudentizedRangeResult result =
      computation(read.number(0), read.integer(1), read.integer(2));
  if (result.failed) return Failure(ExcelError::kNum);
  return XXloper::Number(result.value);
}

}  // namespace

/// The probability that the range of `means` means does not exceed q standard errors estimated with
/// `df` degrees of freedom. df < 1 or means < 2: #NUM!.
ZAV_EXPORT XLOPER12* ZavrelStudentizedRangeDist(const XLOPER12* q, const XLOPER12* df,
                                                const XLOPER12* means) {
  return WorksheetFunction(
      "ZavrelStudentizedRangeDist", kValueDfMeans, {q, df, means},
      [](const Parameters& read) { return Compute(StudentizedRangeProbability, read); });
}

/// The q with this probability. df < 1, means < 2, p < 0, p >= 1, or no q with a probability close
/// to p: #NUM!.
ZAV_EXPORT XLOPER12* ZavrelStudentizedRangeInv(const XLOPER12* p, const XLOPER12* df,
                                               const XLOPER12* means) {
  return WorksheetFunction(
      "ZavrelStudentizedRangeInv", kValueDfMeans, {p, df, means},
      [](const Parameters& read) { return Compute(StudentizedRangeQuantile, read); });
}

}  // namespace zavrel
