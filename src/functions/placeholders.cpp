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

ZAV_EXPORT double ZavrelRand() { return NotYetNumber("ZavrelRand"); }

}  // namespace zavrel
