// Paired statistics, counts inside bounds and transforms as a workbook's user meets them.
#include <doctest/doctest.h>

#include <cmath>
#include <fstream>
#include <string>

#include "host/xlsx/xlsx_file.h"
#include "integration/example_workbook.h"
#include "integration/running_add_in.h"

namespace zavrel::tests {
namespace {

using zavhost::ErrorCode;
using zavhost::Value;

/// Column A: 10, empty, 30, 40, text, #N/A, 70, 80; column B: 1, 2, empty, 4, 5, 6, 10: complete in
/// rows 1, 4 and 7. Column C: Male, male, Female, empty, #N/A, ÉTÉ. Column D: 4, empty, text, #N/A.
/// Column E: 1, 2, 2, 12, TRUE. Columns F and G: values and groups, twice four rows.
zavhost::Workbook SmallBook() {
  zavhost::Workbook book;
  zavhost::Sheet& sheet = book.sheets.emplace_back(u"Data");
  const auto fill = [&](int column, std::initializer_list<Value> cells) {
    int row = 0;
    for (const Value& cell : cells) sheet.Set(row++, column, cell);
  };
  fill(0, {Value(10.0), Value(), Value(30.0), Value(40.0), Value(u"50"), Value(ErrorCode::kNA),
           Value(70.0), Value(80.0)});
  fill(1, {Value(1.0), Value(2.0), Value(), Value(4.0), Value(5.0), Value(6.0), Value(10.0)});
  fill(2, {Value(u"Male"), Value(u"male"), Value(u"Female"), Value(), Value(ErrorCode::kNA),
           Value(u"\u00C9T\u00C9")});
  fill(3, {Value(4.0), Value(), Value(u"text"), Value(ErrorCode::kNA)});
  fill(4, {Value(1.0), Value(2.0), Value(2.0), Value(12.0), Value(true)});
  const double values[] = {0.7, -1.6, 3.4, 2.0, 1.9, 0.8, 5.5, 0.1};
  for (int row = 0; row < 8; ++row) {
    sheet.Set(row, 5, Value(values[row]));
    sheet.Set(row, 6, Value(row < 4 ? u"before" : u"after"));
  }
  return book;
}

}  // namespace

TEST_CASE("pairs in a sheet") {
  auto engine = ServingAddIn(SmallBook());
  for (const char16_t* ranges : {u"A1:A8,B1:B7", u"A1:A7,B1:B8", u"A:A,B:B", u"A1:A8,B:B",
                                 u"Data!A1:A8,B1:B100", u"(A1:A3,A4:A8),B1:B7"}) {
    CAPTURE(zavhost::Utf8FromUtf16(ranges));
    const auto call = [&](const char16_t* function) {
      return std::u16string(u"Zav") + function + u"(" + ranges + u")";
    };
    CHECK(Shown(*engine, call(u"PairCount")) == "3");
    CHECK(Shown(*engine, call(u"PairMean")) == "35");  // 9, 36, 60
    CHECK(Number(*engine, call(u"PairStdDev")) == doctest::Approx(std::sqrt(651.0)).epsilon(1e-14));
    CHECK(Shown(*engine, call(u"PairMedian")) == "22.5");
    CHECK(Number(*engine, call(u"PairMeanQuotient")) == 9);
    CHECK(Shown(*engine, call(u"PairCountRange")) == "3");
  }
  CHECK(Shown(*engine, u"ZavPairMedian(A1:A8,B1:B8,0)") == "36");
  CHECK(Shown(*engine, u"ZavPairMedian(A1:A8,B1:B8,6)") == "#VALUE!");
  CHECK(Shown(*engine, u"ZavPairMean(A1:A3,B1:B3)") == "9");
  CHECK(Shown(*engine, u"ZavPairStdDev(A1:A3,B1:B3)") == "#DIV/0!");
  CHECK(Shown(*engine, u"ZavPairCount(A2:A3,B2:B3)") == "0");
  for (const char16_t* none : {u"ZavPairMean(A2:A3,B2:B3)", u"ZavPairStdDev(A2:A3,B2:B3)",
                               u"ZavPairMedian(A2:A3,B2:B3)", u"ZavPairMeanQuotient(A2:A3,B2:B3)",
                               u"ZavPairMeanAbsQuotient(A:A,H:H)", u"ZavPairMean(1:2,B1:B8)"}) {
    CHECK(Shown(*engine, none) == "#VALUE!");
  }
  CHECK(Shown(*engine, u"ZavPairMeanQuotient({6,9},{3,-3})") == "-0.5");
  CHECK(Shown(*engine, u"ZavPairMeanAbsQuotient({6;9},{3;-3})") == "2.5");
  CHECK(Shown(*engine, u"ZavPairMeanQuotient({6,9},{3,0})") == "#DIV/0!");
  CHECK(Shown(*engine, u"ZavPairMeanQuotient({1E+300,9},{1E-300,0})") == "#NUM!");
  CHECK(Shown(*engine, u"ZavPairMean(A1:A8-1,B1:B7)") == "28.6");  // an array, blanks as 0
  CloseClean(*engine);
}

TEST_CASE("pairs of two stacked groups") {
  auto engine = ServingAddIn(SmallBook());
  const std::u16string groups =
      u"(ZavDestack(F1:F8,G1:G8,\"After\"),ZavDestack(F1:F8,G1:G8,\"before\"))";
  CHECK(Number(*engine, u"ZavPairMean" + groups) == doctest::Approx(0.95));
  CHECK(Number(*engine,
               u"ZavPairMedian(ZavDestack(F:F,G:G,\"after\"),ZavDestack(F:F,G:G,"
               u"\"before\"),0)") == doctest::Approx(1.65));
  CHECK(Shown(*engine, u"ZavPairCount(ZavDestack(F1:F8,G1:G8,\"after\"),A1:A8)") == "3");
  engine->workbook().sheets[0].Set(7, 5, Value());
  CHECK(Shown(*engine, u"ZavPairCount" + groups) == "3");
  engine->workbook().sheets[0].Set(4, 5, Value(8.7));
  CHECK(Number(*engine, u"ZavPairMean" + groups) == doctest::Approx(12.5 / 3));
  CloseClean(*engine);
}

TEST_CASE("counts inside bounds in a sheet") {
  auto engine = ServingAddIn(SmallBook());
  CHECK(Shown(*engine, u"ZavCountRange(A1:A8)") == "5");
  CHECK(Shown(*engine, u"ZavCountRange(A:B,,)") == "11");
  CHECK(Shown(*engine, u"ZavCountRange(A1:A8,30,70)") == "3");
  CHECK(Shown(*engine, u"ZavCountRange(A1:A8,30,70,FALSE)") == "2");
  CHECK(Shown(*engine, u"ZavCountRange(A1:A8,30,70,,FALSE)") == "2");
  CHECK(Shown(*engine, u"ZavCountRange(A1:A8,30,70,0,\"FALSE\")") == "1");
  CHECK(Shown(*engine, u"ZavCountRange(A1:A8,H1,\"35\")") == "2");
  CHECK(Shown(*engine, u"ZavCountRange({5,5},5,5,FALSE,FALSE)") == "0");
  CHECK(Shown(*engine, u"ZavCountRange(A1:A8,A6)") == "#VALUE!");
  CHECK(Shown(*engine, u"ZavPairCountRange(A1:A8,B1:B8,9,60,,FALSE)") == "2");
  CHECK(Shown(*engine, u"ZavPairCountRange(A1:A8,B1:B8,,36)") == "2");
  CHECK(Shown(*engine, u"ZavPairCountRange(A1:A8,B1:B8,60)") == "1");
  CloseClean(*engine);
}

// An empty cell of an array result shows as 0.
TEST_CASE("transforms in a sheet") {
  auto engine = ServingAddIn(SmallBook());
  CHECK(Shown(*engine, u"ZavStandardize(5,3,4)") == "0.5");
  CHECK(Shown(*engine, u"ZavStandardize(5,3,0)") == "#DIV/0!");
  CHECK(Shown(*engine, u"ZavStandardize(1E+300,0,1E-300)") == "#NUM!");
  CHECK(Shown(*engine, u"ZavLn(1)") == "0");
  CHECK(Shown(*engine, u"ZavLn(0)") == "#NUM!");
  CHECK(Shown(*engine, u"ZavPower(D1:D4,0.5)") == "2;0;#VALUE!;#N/A;");
  CHECK(Shown(*engine, u"ZavPower(D1:E2,2)") == "16;1;0;4;");
  CHECK(Shown(*engine, u"ZavLog({100,0.01},10)") == "2;-2;");
  CHECK(Shown(*engine, u"ZavLog({100;0},-10)") == "#VALUE!;#VALUE!;");
  CHECK(Shown(*engine, u"ZavLog({100;0},1)") == "#NUM!;#NUM!;");
  CHECK(Shown(*engine, u"ZavSum(ZavPower(E:E,2))") == "153");

  CHECK(Shown(*engine, u"ZavDummy(C1:C5,\"MALE\")") == "1;1;0;0;#N/A;");
  CHECK(Shown(*engine, u"ZavDummy(C6,\"\u00E9t\u00E9\")") == "1;");
  CHECK(Shown(*engine, u"ZavDummy(E1:E5,2)") == "0;1;1;0;#VALUE!;");
  CHECK(Shown(*engine, u"ZavDummy(E:E,\"12\")") == "0;0;0;1;#VALUE!;");
  CHECK(Shown(*engine, u"ZavDummy(C1:C5,)") == "0");
  CHECK(Shown(*engine, u"ZavDummy(C1:C5,C5)") == "#VALUE!");

  CHECK(Shown(*engine, u"ZavInteraction(C1:C5,\"male\",E1:E5,\"\")") == "1;2;0;0;#N/A;");
  CHECK(Shown(*engine, u"ZavInteraction(E1:E5,H1,C1:C5,\"male\")") == "1;2;0;0;#VALUE!;");
  CHECK(Shown(*engine, u"ZavInteraction(G1:G8,\"after\",F1:F8,\"\",E1:E8,2)") ==
        "0;0;0;0;#VALUE!;0;0;0;");
  CHECK(Shown(*engine, u"ZavInteraction(C:C,\"male\",E1:E8,\"\")") == "1;2;0;0;#N/A;0;0;0;");
  CHECK(Shown(*engine, u"ZavInteraction(C1:C5,\"male\",E1:E4,\"\")") == "#VALUE!");
  CHECK(Shown(*engine, u"ZavInteraction(C1:C5,\"male\")") == "#VALUE!");
  CloseClean(*engine);
}

TEST_CASE("pairs and transforms follow every edit") {
  auto engine = ServingAddIn(SmallBook());
  zavhost::Sheet& sheet = engine->workbook().sheets[0];
  const auto shown = [&](const char16_t* formula) { return Shown(*engine, formula); };
  for (int round = 0; round < 2; ++round) {
    CHECK(shown(u"ZavPairMean(A1:A8,B1:B8)") == "35");
    CHECK(shown(u"ZavCountRange(A:A,30)") == "4");
    CHECK(shown(u"ZavDummy(C1:C2,\"male\")") == "1;1;");
  }
  sheet.Set(1, 0, Value(7.0));  // completes the second pair: 5
  CHECK(shown(u"ZavPairMean(A1:A8,B1:B8)") == "27.5");
  CHECK(shown(u"ZavPairMedian(A1:A8,B1:B8,0)") == "22.5");
  sheet.Set(9, 0, Value(31.0));
  CHECK(shown(u"ZavCountRange(A:A,30)") == "5");
  sheet.Set(9, 1, Value(1.0));
  CHECK(shown(u"ZavPairCount(A:A,B:B)") == "5");
  sheet.Set(1, 2, Value(2.0));
  CHECK(shown(u"ZavDummy(C1:C2,\"male\")") == "1;0;");
  CHECK(shown(u"ZavInteraction(C1:C2,\"2\",E1:E2,\"\")") == "0;2;");
  sheet.Set(1, 4, Value(u"2"));
  CHECK(shown(u"ZavInteraction(C1:C2,\"2\",E1:E2,\"\")") == "0;#VALUE!;");
  CHECK(shown(u"ZavInteraction(C1:C2,\"2\",E1:E2,\"2\")") == "0;1;");
  CloseClean(*engine);
}

TEST_CASE("the example workbook of pairs and categories gives what R gives") {
  ExampleWorkbook example("sleep-and-looms.xlsx");
  const int compared =
      example.CompareWith("sleep_and_looms_reference.csv", [](double number, double expected) {
        CHECK(number == doctest::Approx(expected).epsilon(1e-13));
      });
  CHECK(compared == 377);
  CHECK(example.At("Paired", "B14") == Value(u"a patient gained nothing"));
  CHECK(example.At("Categories", "A7") == Value(u"H"));
  CHECK(example.At("Categories", "A9") == Value(u"M"));
  CHECK(example.At("Categories", "A10") == Value(ErrorCode::kNA));
  CHECK(example.At("Categories", "B16") == Value(true));
  CloseClean(example.engine());
}

}  // namespace zavrel::tests
