// Percentiles, quartiles, median and mode, and the functions that list cells, as a workbook's user
// meets them.
#include <doctest/doctest.h>

#include "integration/running_add_in.h"

namespace zavrel::tests {
namespace {

using zavhost::ErrorCode;
using zavhost::Value;

/// Column A: 1 to 4. Column B: 1, text, empty, TRUE, #N/A, 2, two blanks as text. Column C from C3:
/// 7, 1, 6, 1, 5.
zavhost::Workbook SmallBook() {
  zavhost::Workbook book;
  zavhost::Sheet& sheet = book.sheets.emplace_back(u"Data");
  for (int row = 0; row < 4; ++row) sheet.Set(row, 0, Value(4.0 - row));
  sheet.Set(0, 1, Value(1.0));
  sheet.Set(1, 1, Value(u"a"));
  sheet.Set(3, 1, Value(true));
  sheet.Set(4, 1, Value(ErrorCode::kNA));
  sheet.Set(5, 1, Value(2.0));
  sheet.Set(6, 1, Value(u" \u00A0"));
  const double values[] = {7, 1, 6, 1, 5};
  for (int row = 0; row < 5; ++row) sheet.Set(row + 2, 2, Value(values[row]));
  return book;
}

/// An array formula in the range; the values stand in the sheet after a recalculation.
void AddArrayFormula(zavhost::Workbook& book, const zavhost::CellRange& range,
                     const char16_t* formula) {
  const auto text = static_cast<std::uint32_t>(book.formula_texts.size());
  const zavhost::CellAddress top_left{0, range.first_row, range.first_column};
  book.formula_texts.emplace_back(formula);
  book.formulas.push_back({top_left, text, top_left, range});
}

}  // namespace

TEST_CASE("percentiles, quartiles and medians in a sheet") {
  auto engine = ServingAddIn(SmallBook());
  CHECK(Shown(*engine, u"ZavMedian(A1:A4,0)") == "2.5");
  CHECK(Shown(*engine, u"ZavMedian(A1:A4,3)") == "2");
  CHECK(Shown(*engine, u"ZavMedian(A1:A4,5)") == "2.5");
  CHECK(Shown(*engine, u"ZavMedian({1,3,4})") == "2");          // continuous: interpolated
  CHECK(Shown(*engine, u"ZavMedian({1,3,3})") == "3");          // a tie: one of the values
  CHECK(Shown(*engine, u"ZavMedian((A1:A2,C3:C7),0)") == "4");  // 4, 3 and 7, 1, 6, 1, 5
  CHECK(Shown(*engine, u"ZavMedian(A:A,0)") == "2.5");
  CHECK(Shown(*engine, u"ZavMedian(B1:B7,0)") == "1.5");
  CHECK(Shown(*engine, u"ZavMedian(8)") == "8");
  for (const char16_t* method : {u"-1", u"0", u"1", u"2", u"3", u"4", u"5", u""}) {
    const std::u16string end = std::u16string(u",") + method + u")";
    CHECK(Shown(*engine, u"ZavPercentile(A1:A4,0" + end) == "1");
    CHECK(Shown(*engine, u"ZavPercentile(A1:A4,1" + end) == "4");
    CHECK(Shown(*engine, u"ZavQuartile(A1:A4,4" + end) == "4");
    CHECK(Shown(*engine, u"ZavPercentile(8,0.3" + end) == "8");
  }
  CHECK(Number(*engine, u"ZavPercentile(A1:A4,0.9,0)") == doctest::Approx(3.7));
  CHECK(Number(*engine, u"ZavPercentile(A1:A4,0.9,4)") == 4);
  CHECK(Shown(*engine, u"ZavQuartile(A1:A4,1,0)") == "1.75");

  for (const char16_t* refused :
       {u"ZavQuartile(A1:A4,2.5)", u"ZavQuartile(A1:A4,5)", u"ZavPercentile(A1:A4,1.01)",
        u"ZavPercentile(A1:A4,-0.01)", u"ZavPercentile(A1:A4,)", u"ZavMedian(A1:A4,6)",
        u"ZavMedian(A1:A4,-2)", u"ZavMedian(E1:E9)", u"ZavPercentile(E:E,0)",
        u"ZavQuartile(\"7\",4)", u"ZavPercentile(A1:A4,B5)", u"ZavMedian(A1:A4,\"x\")"}) {
    CAPTURE(zavhost::Utf8FromUtf16(refused));
    CHECK(Shown(*engine, refused) == "#VALUE!");
  }
  // What was sorted for an earlier question is not used for changed cells.
  engine->workbook().sheets[0].Set(0, 0, Value(-10.0));
  CHECK(Shown(*engine, u"ZavQuartile(A1:A4,0)") == "-10");
  CHECK(Shown(*engine, u"ZavMedian(A1:A4,0)") == "1.5");
  CloseClean(*engine);
}

TEST_CASE("the mode in a sheet") {
  auto engine = ServingAddIn(SmallBook());
  CHECK(Shown(*engine, u"ZavMode(C3:C7)") == "1");
  CHECK(Shown(*engine, u"ZavMode(C3:C7,0)") == "6");
  CHECK(Shown(*engine, u"ZavMode(C3:C7,TRUE)") == "1");
  CHECK(Shown(*engine, u"ZavMode({3,2,2,3},1)") == "2");
  CHECK(Shown(*engine, u"ZavMode(E1:E9)") == "#N/A");
  CHECK(Shown(*engine, u"ZavMode(C3:C7,\"x\")") == "#VALUE!");
  CloseClean(*engine);
}

TEST_CASE("blank cells as a formula sees them") {
  auto engine = ServingAddIn(SmallBook());
  CHECK(Shown(*engine, u"ZavIsBlank(B3)") == "TRUE");
  CHECK(Shown(*engine, u"ZavIsBlank(B7)") == "TRUE");
  CHECK(Shown(*engine, u"ZavIsBlank(\"\")") == "TRUE");
  CHECK(Shown(*engine, u"ZavIsBlank(\" a \")") == "FALSE");
  CHECK(Shown(*engine, u"ZavIsBlank(0)") == "FALSE");
  CHECK(Shown(*engine, u"ZavIsBlank(FALSE)") == "FALSE");
  CHECK(Shown(*engine, u"ZavIsBlank(B5)") == "#VALUE!");
  CloseClean(*engine);
}

TEST_CASE("cells of a class, as an array formula lists them") {
  zavhost::Workbook book = SmallBook();
  AddArrayFormula(book, {9, 4, 10, 4}, u"ZavGetCellValues(M10:M11,1)");  // E10:E11, before M10
  AddArrayFormula(book, {9, 12, 9, 12}, u"ZavMedian(A1:A4,0)");
  AddArrayFormula(book, {0, 4, 3, 4}, u"ZavGetCellValues(B1:B6,1)");   // E1:E4
  AddArrayFormula(book, {0, 6, 1, 7}, u"ZavGetCellValues(B1:B7,2)");   // G1:H2
  AddArrayFormula(book, {5, 4, 5, 12}, u"ZavGetCellValues(B1:B7,0)");  // E6:M6
  AddArrayFormula(book, {7, 4, 7, 5}, u"ZavGetCellValues(B1:B7,5)");   // E8:F8
  auto engine = ServingAddIn(std::move(book));
  const zavhost::RecalculationReport report = engine->Recalculate();
  CHECK(report.errors.empty());
  CHECK(Shown(*engine, u"E1:E4&\"\"") == "1;2;#N/A;#N/A;");
  CHECK(Shown(*engine, u"G1:H2&\"\"") == "1,a;TRUE,#N/A;");
  CHECK(Shown(*engine, u"E6:M6&\"\"") == "1,a,0,TRUE,#N/A,2, \u00A0,#N/A,#N/A;");
  CHECK(Shown(*engine, u"E8:F8&\"\"") == "#VALUE!,#VALUE!;");
  CHECK(Shown(*engine, u"E10:E11&\"\"") == "2.5;#N/A;");
  CloseClean(*engine);
}

TEST_CASE("called from elsewhere than a cell there is no place for an array") {
  using zavhost::CallerForm;
  for (const CallerForm caller :
       {CallerForm::kError, CallerForm::kNumber, CallerForm::kText, CallerForm::kMenu}) {
    zavhost::EngineOptions options;
    options.behaviour.caller = caller;
    zavhost::Engine engine(SmallBook(), std::move(options));
    engine.LoadAddIn(AddInFile());
    engine.Announce(5);
    CHECK(Shown(engine, u"ZavGetCellValues(A1:A4,1)") == "#REF!");
    CHECK(Shown(engine, u"ZavMedian(A1:A4,0)") == "2.5");
    CloseClean(engine);
  }
}

}  // namespace zavrel::tests
