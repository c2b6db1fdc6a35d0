// The path from a range argument to a number, through the host and the real add-in.
#include <doctest/doctest.h>

#include <cmath>
#include <fstream>
#include <sstream>

#include "host/xlsx/xlsx_file.h"
#include "integration/running_add_in.h"

namespace zavrel::tests {
namespace {

using zavhost::ErrorCode;
using zavhost::Value;

/// Column A: 1, text, empty, TRUE, #N/A. Column B: 2, 4, 4, 4, 5, 5, 7, 9. Column C: 1, empty, 3.
zavhost::Workbook SmallBook() {
  zavhost::Workbook book;
  book.sheets.emplace_back(u"Data");
  book.sheets.emplace_back(u"Other sheet");
  zavhost::Sheet& sheet = book.sheets[0];
  sheet.Set(0, 0, Value(1.0));
  sheet.Set(1, 0, Value(u"12"));
  sheet.Set(3, 0, Value(true));
  sheet.Set(4, 0, Value(ErrorCode::kNA));
  const double values[] = {2, 4, 4, 4, 5, 5, 7, 9};
  for (int row = 0; row < 8; ++row) sheet.Set(row, 1, Value(values[row]));
  sheet.Set(0, 2, Value(1.0));
  sheet.Set(2, 2, Value(3.0));
  book.sheets[1].Set(0, 0, Value(100.0));
  return book;
}

}  // namespace

TEST_CASE("cells, gaps and errors mean what the help says") {
  auto engine = ServingAddIn(SmallBook());
  const char* const counts[] = {"5", "1", "4", "3", "1"};
  for (int code = 0; code < 5; ++code) {
    CHECK(Shown(*engine, u"ZavCountCellsByType(A1:A5," +
                             zavhost::Utf16FromUtf8(std::to_string(code)) + u")") == counts[code]);
  }
  CHECK(Shown(*engine, u"ZavCountCellsByType(A1:A5,5)") == "#VALUE!");
  CHECK(Shown(*engine, u"ZavCountCellsByType(A1:A5,-1)") == "#VALUE!");

  CHECK(Shown(*engine, u"ZavMean(C1:C3)") == "2");
  CHECK(Shown(*engine, u"ZavMeanI(C1:C3)") == "");
  CHECK(Shown(*engine, u"ZavMeanI(B1:B8)") == "5");
  CHECK(Shown(*engine, u"ZavMean(A1:A5)") == "1");
  CHECK(Shown(*engine, u"ZavStdDevP(B1:B8)") == "2");
  CHECK(Number(*engine, u"ZavVariance(B1:B8)") == doctest::Approx(32.0 / 7).epsilon(1e-15));

  CHECK(Shown(*engine, u"ZavMean(D1:D3)") == "#N/A");
  CHECK(Shown(*engine, u"ZavSum(D1:D3)") == "0");
  CHECK(Shown(*engine, u"ZavProduct(D1:D3)") == "#VALUE!");
  CHECK(Shown(*engine, u"ZavVariance(7)") == "#DIV/0!");
  CHECK(Shown(*engine, u"ZavVarianceP(7)") == "0");
  CHECK(Shown(*engine, u"ZavSumSq(1E+200)") == "#NUM!");
  CHECK(Shown(*engine, u"ZavProduct(1E+200,1E+200,0)") == "0");
  CloseClean(*engine);
}

TEST_CASE("arguments of every shape form one data set") {
  auto engine = ServingAddIn(SmallBook());
  CHECK(Shown(*engine, u"ZavSum(B1:B3,'Other sheet'!A1,{1,2;3,4},5)") == "125");
  CHECK(Shown(*engine, u"ZavSum((B1:B2,B7:B8))") == "22");
  CHECK(Shown(*engine, u"ZavSum(B:B)") == "40");
  CHECK(Shown(*engine, u"ZavSum(1:1)") == "4");
  CHECK(Shown(*engine, u"ZavCount(B1:B8,,3)") == "9");
  CHECK(Shown(*engine,
              u"ZavSum(1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17,18,19,20,21,22,23,24,25,26,27,28,"
              u"29,30)") == "465");
  CHECK(Shown(*engine, u"ZavMax(ZavMin(B1:B8),ZavMean(B1:B8))") == "5");
  CloseClean(*engine);
}

TEST_CASE("an edited cell is seen at once, whatever was computed before") {
  auto engine = ServingAddIn(SmallBook());
  CHECK(Shown(*engine, u"ZavMean(B1:B8)") == "5");
  CHECK(Shown(*engine, u"ZavMean(B1:B8)") == "5");
  zavhost::Sheet& sheet = engine->workbook().sheets[0];
  sheet.Set(7, 1, Value(17.0));
  CHECK(Shown(*engine, u"ZavMean(B1:B8)") == "6");
  CHECK(Shown(*engine, u"ZavMax(B1:B8)") == "17");
  sheet.Set(7, 1, Value(u"17"));
  CHECK(Shown(*engine, u"ZavMax(B1:B8)") == "7");
  sheet.Set(7, 1, Value(u"18"));
  CHECK(Shown(*engine, u"ZavCount(B1:B8)") == "7");
  sheet.Set(7, 1, Value());
  CHECK(Shown(*engine, u"ZavMeanI(B1:B8)") == "");
  sheet.Set(7, 1, Value(9.0));
  CHECK(Shown(*engine, u"ZavMeanI(B1:B8)") == "5");
  CloseClean(*engine);
}

TEST_CASE("the example workbook gives what R gives") {
  auto engine = ServingAddIn(zavhost::ReadXlsx(std::filesystem::path(ZAVREL_SOURCE_DIR) /
                                               "examples" / "air-quality.xlsx"));
  const zavhost::RecalculationReport report = engine->Recalculate();
  CHECK(report.warnings.empty());
  CHECK(report.errors.empty());
  const zavhost::Workbook& book = engine->workbook();
  const zavhost::Sheet& sheet = book.sheets[*book.FindSheet(u"Summary")];

  std::ifstream file(std::filesystem::path(ZAVREL_TEST_DATA) / "air_quality_reference.csv");
  int compared = 0;
  for (std::string line; std::getline(file, line);) {
    const std::string cell = line.substr(0, line.find(','));
    const double expected = std::stod(line.substr(line.find(',') + 1));
    const Value& value = sheet.At(std::stoi(cell.substr(1)) - 1, cell[0] - 'A');
    CAPTURE(cell);
    REQUIRE(value.number() != nullptr);
    CHECK(*value.number() == doctest::Approx(expected).epsilon(1e-13));
    ++compared;
  }
  CHECK(compared == 124);
  CHECK(sheet.At(34, 1) == Value(u"no data"));
  CHECK(sheet.At(46, 4) == Value(u"n/a"));
  CloseClean(*engine);
}

}  // namespace zavrel::tests
