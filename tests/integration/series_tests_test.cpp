// Test statistics of series and the studentized range, as a workbook's user meets them.
#include <doctest/doctest.h>

#include "integration/running_add_in.h"

namespace zavrel::tests {
namespace {

using zavhost::ErrorCode;
using zavhost::Value;

/// Column A: 1, 2, 3, text, 2, empty, 1. Column B: 5, 5, 5. Column C: three zeros.
zavhost::Workbook SmallBook() {
  zavhost::Workbook book;
  zavhost::Sheet& sheet = book.sheets.emplace_back(u"Data");
  const Value column[] = {Value(1.0), Value(2.0), Value(3.0), Value(u"4"), Value(2.0)};
  for (int row = 0; row < 5; ++row) sheet.Set(row, 0, column[row]);
  sheet.Set(6, 0, Value(1.0));
  for (int row = 0; row < 3; ++row) {
    sheet.Set(row, 1, Value(5.0));
    sheet.Set(row, 2, Value(0.0));
  }
  return book;
}

}  // namespace

TEST_CASE("test statistics of a series in a sheet") {
  auto engine = ServingAddIn(SmallBook());
  CHECK(Shown(*engine, u"ZavRunsTest(A1:A7,2)") == "3");
  CHECK(Shown(*engine, u"ZavRunsTest(A:A,ZavMean(A:A))") == "3");
  CHECK(Shown(*engine, u"ZavRunsTest(A1:A7,\"2\")") == "3");  // the host makes the number
  CHECK(Shown(*engine, u"ZavRunsTest(A1,9)") == "1");
  CHECK(Number(*engine, u"ZavDurbinWatson(A1:A7)") == doctest::Approx(4.0 / 19));
  CHECK(Number(*engine, u"ZavAutocorrelation(A1:A7,1)") == doctest::Approx(0.16 / 2.8));
  CHECK(Shown(*engine, u"ZavAutocorrelation(A1:A7,0)") == "1");
  CHECK(Shown(*engine, u"ZavAutocorrelation(A1:A7,5)") == "0");
  CHECK(Number(*engine, u"ZavLilliefors({2,4,4,5,9})") == doctest::Approx(0.2692056743389093));
  CHECK(Number(*engine, u"ZavLilliefors({1,2})") == doctest::Approx(0.26024993890652326));
  CHECK(Shown(*engine, u"ZavDurbinWatson(B1:B3)") == "0");

  for (const char16_t* no_spread : {u"ZavLilliefors(B1:B3)", u"ZavLilliefors(3)",
                                    u"ZavAutocorrelation(B1:B3,1)", u"ZavDurbinWatson(C1:C3)"}) {
    CAPTURE(zavhost::Utf8FromUtf16(no_spread));
    CHECK(Shown(*engine, no_spread) == "#DIV/0!");
  }
  for (const char16_t* refused :
       {u"ZavLilliefors(E:E)", u"ZavRunsTest(E1:E5,1)", u"ZavRunsTest(A1:A7,\"x\")",
        u"ZavDurbinWatson(A1)", u"ZavAutocorrelation(A1:A7,6)", u"ZavAutocorrelation(A1:A7,-1)",
        u"ZavAutocorrelation(A1:A7,251)", u"ZavAutocorrelation(E1:E5,0)"}) {
    CAPTURE(zavhost::Utf8FromUtf16(refused));
    CHECK(Shown(*engine, refused) == "#VALUE!");
  }
  CHECK(Shown(*engine, u"ZavDurbinWatson({1E+200,2})") == "#NUM!");
  CloseClean(*engine);
}

TEST_CASE("the studentized range in a sheet") {
  auto engine = ServingAddIn();
  CHECK(Number(*engine, u"ZavStudentizedRangeInv(0.95,10,3)") ==
        doctest::Approx(3.88).epsilon(2e-3));
  CHECK(Number(*engine, u"ZavStudentizedRangeDist(ZavStudentizedRangeInv(0.99,120,7),120,7)") ==
        doctest::Approx(0.99).epsilon(1e-12));
  CHECK(Shown(*engine, u"ZavStudentizedRangeDist(0,10,3)") == "0");
  CHECK(Shown(*engine, u"ZavStudentizedRangeDist(-1,10,3)") == "0");
  CHECK(Shown(*engine, u"ZavStudentizedRangeInv(0,10,3)") == "0");
  for (const char16_t* refused :
       {u"ZavStudentizedRangeDist(3,10,1)", u"ZavStudentizedRangeDist(3,0,3)",
        u"ZavStudentizedRangeInv(1,10,3)", u"ZavStudentizedRangeInv(-0.1,10,3)",
        u"ZavStudentizedRangeInv(0.5,0,3)"}) {
    CAPTURE(zavhost::Utf8FromUtf16(refused));
    CHECK(Shown(*engine, refused) == "#NUM!");
  }
  CHECK(Shown(*engine, u"ZavStudentizedRangeDist(3,10,)") == "#VALUE!");
  CloseClean(*engine);
}

}  // namespace zavrel::tests
