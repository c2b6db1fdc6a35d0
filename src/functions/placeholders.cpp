// The registered functions that are still to come: each answers with its result type's failure
// value. A function that arrives leaves this list.
#include <cstdint>
#include <limits>
#include <optional>
#include <string>

#include "addin/worksheet_function.h"
#include "excel/xxloper.h"
#include "platform/export.h"

namespace zavrel {
namespace {

// One answer per result type, under the name that the log shows.
XLOPER12* NotYetValue(const char* name) {
  return WorksheetFunction(name, [] { return XXloper::Error(ExcelError::kNA); });
}
// -1 is the failure value of the outlier count.
std::int32_t NotYetInteger(const char* name) {
  return PlainFunction<std::int32_t>(name, -1, [] { return -1; });
}
// Excel shows #NUM! for a not-a-number.
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
double NotYetNumber(const char* name) {
  return PlainFunction(name, kNaN, [] { return kNaN; });
}

}  // namespace

// The argument lists stay open: what is not read need not be declared. On the 64-bit convention the
// caller removes the arguments.
#define ZAV_NOT_YET(name) \
  ZAV_EXPORT XLOPER12* name() { return NotYetValue(#name); }

ZAV_NOT_YET(ZavrelDurbinWatson)
ZAV_NOT_YET(ZavrelAutocorrelation)
ZAV_NOT_YET(ZavrelBoxPlotX)
ZAV_NOT_YET(ZavrelBoxPlotY)
ZAV_NOT_YET(ZavrelOutlierType)
ZAV_NOT_YET(ZavrelScatterPlot)
ZAV_NOT_YET(ZavrelQQPlotStandardize)
ZAV_NOT_YET(ZavrelQQPlotSort)
ZAV_NOT_YET(ZavrelQQPlotZValue)
ZAV_NOT_YET(ZavrelLilliefors)
ZAV_NOT_YET(ZavrelRunsTest)
ZAV_NOT_YET(ZavrelCovariance)
ZAV_NOT_YET(ZavrelCovarianceP)
ZAV_NOT_YET(ZavrelCorrelationCoeff)
ZAV_NOT_YET(ZavrelStudentizedRangeDist)
ZAV_NOT_YET(ZavrelStudentizedRangeInv)
ZAV_NOT_YET(ZavrelNormal)
ZAV_NOT_YET(ZavrelStudent)
ZAV_NOT_YET(ZavrelChisq)
ZAV_NOT_YET(ZavrelF)
ZAV_NOT_YET(ZavrelBinomial)
ZAV_NOT_YET(ZavrelEigenvalues)
ZAV_NOT_YET(ZavrelEigenvectors)
ZAV_NOT_YET(ZavrelEigendata)
ZAV_NOT_YET(ZavrelPCAScores)
ZAV_NOT_YET(ZavrelCorrelationMatrix)
ZAV_NOT_YET(ZavrelCovarianceMatrix)
ZAV_NOT_YET(ZavrelWSRExactPValMaxSample)
ZAV_NOT_YET(ZavrelWSRpValue)
ZAV_NOT_YET(ZavrelWSRTies)
ZAV_NOT_YET(ZavrelWSRTieCorrectionTerm)
ZAV_NOT_YET(ZavrelWSRNegative)
ZAV_NOT_YET(ZavrelWSRPositive)
ZAV_NOT_YET(ZavrelWSRPairTies)
ZAV_NOT_YET(ZavrelWSRPairTieCorrectionTerm)
ZAV_NOT_YET(ZavrelWSRPairNegative)
ZAV_NOT_YET(ZavrelWSRPairPositive)
ZAV_NOT_YET(ZavrelMWUsingNormalApproximation)
ZAV_NOT_YET(ZavrelMWpValue)
ZAV_NOT_YET(ZavrelMWTies)
ZAV_NOT_YET(ZavrelMWTieCorrectionTerm)
ZAV_NOT_YET(ZavrelMWRankSum1)
ZAV_NOT_YET(ZavrelMWRankSum2)
ZAV_NOT_YET(ZavrelKWData)
ZAV_NOT_YET(ZavrelKWpValue)
ZAV_NOT_YET(ZavrelKWpValueComputationMethod)

#undef ZAV_NOT_YET

ZAV_EXPORT std::int32_t ZavrelBoxPlotCountOutliers() {
  return NotYetInteger("ZavrelBoxPlotCountOutliers");
}
ZAV_EXPORT double ZavrelRand() { return NotYetNumber("ZavrelRand"); }

}  // namespace zavrel
