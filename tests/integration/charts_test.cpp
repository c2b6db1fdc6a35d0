// Helper columns of charts, as a workbook's user meets them.
#include <doctest/doctest.h>

#include "integration/running_add_in.h"

namespace zavrel::tests {
namespace {

using zavhost::Value;

/// Column A: 1 to 10, column B: 2, text, empty, 8, then blank. Array formulas from column D on.
zavhost::Workbook SmallBook() {
  zavhost::Workbook book;
  zavhost::Sheet& sheet = book.sheets.emplace_back(u"Data");
  for (int row = 0; row < 10; ++row) sheet.Set(row, 0, Value(row + 1.0));
  sheet.Set(0, 1, Value(2.0));
  sheet.Set(1, 1, Value(u"x"));
  sheet.Set(3, 1, Value(8.0));
  int column = 3;
  for (const char16_t* formula :
       {u"ZavBoxPlotX(A1:A10,0,2)", u"ZavBoxPlotY(3,2)", u"ZavBoxPlotX(A1:A10,9,8)",
        u"ZavBoxPlotY(3,5)", u"ZavBoxPlotY(3,8)", u"ZavScatterPlot(A1:A10,B1:B10,1)",
        u"ZavQQPlotSort({3,1,2})", u"ZavQQPlotZValue({3,1,2},1)"}) {
    const auto text = static_cast<std::uint32_t>(book.formula_texts.size());
    const zavhost::CellAddress top_left{0, 0, column};
    book.formula_texts.emplace_back(formula);
    book.formulas.push_back({top_left, text, top_left, zavhost::CellRange{0, column, 4, column}});
    ++column;
  }
  return book;
}

}  // namespace

TEST_CASE("helper columns over the range that they are entered in") {
  auto engine = ServingAddIn(SmallBook());
  CHECK(engine->Recalculate().errors.empty());
  CHECK(Shown(*engine, u"D1:D5&\"\"") == "3.25;1;1;1;#N/A;");
  CHECK(Shown(*engine, u"E1:E5&\"\"") == "3;3;2.85;3.15;#N/A;");
  CHECK(Shown(*engine, u"F1:F5&\"\"") == "#N/A;#N/A;#N/A;#N/A;#N/A;");
  CHECK(Shown(*engine, u"G1:G5&\"\"") == "3;#N/A;#N/A;#N/A;#N/A;");
  CHECK(Shown(*engine, u"H1:H5&\"\"") == "3;3;3;3;3;");
  CHECK(Shown(*engine, u"I1:I5&\"\"") == "2;8;#N/A;#N/A;#N/A;");
  CHECK(Shown(*engine, u"J1:J5&\"\"") == "1;2;3;#N/A;#N/A;");
  CHECK(Shown(*engine, u"ROUND(K1:K3,3)&\"\"") == "-0.967;0;0.967;");
  CloseClean(*engine);
}

TEST_CASE("outliers and chart columns inside formulas") {
  auto engine = ServingAddIn(SmallBook());
  CHECK(Shown(*engine, u"ZavOutlierType(A1:A10,0,14.5)") == "1");
  CHECK(Shown(*engine, u"ZavOutlierType(A1:A10,0,14.49)") == "0");
  CHECK(Shown(*engine, u"ZavOutlierType(A1:A10,,-99)") == "2");
  CHECK(Shown(*engine, u"ZavOutlierType({4,4,4},9,4)") == "2");
  CHECK(Shown(*engine, u"ZavBoxPlotCountOutliers(A1:A10,0)") == "0");
  CHECK(Shown(*engine, u"ZavBoxPlotCountOutliers({1,2,3,4,5,40,41},0)") == "0");
  CHECK(Shown(*engine, u"ZavBoxPlotCountOutliers({1,2,3,4,5,40,41},9)") == "2");
  CHECK(Shown(*engine, u"ZavBoxPlotCountOutliers({1,2,3,4,5,4,3,2,40,41},0)") == "2");
  CHECK(Shown(*engine, u"ZavBoxPlotCountOutliers(M:M,0)") == "-1");
  CHECK(Number(*engine, u"ZavMean(ZavQQPlotStandardize(A1:A10))") == doctest::Approx(0).scale(1));
  CHECK(Number(*engine, u"ZavStdDev(ZavQQPlotStandardize(A1:A10))") == doctest::Approx(1));
  CHECK(Shown(*engine, u"ZavScatterPlot(A1:A10,B1:B10,0)") == "1;4;");
  CHECK(Shown(*engine, u"ZavScatterPlot(A:A,B:B,1)") == "2;8;");
  for (const char16_t* refused :
       {u"ZavOutlierType(A1:A10,0,\"x\")", u"ZavOutlierType(A1:A10,0,)", u"ZavBoxPlotX(M:M,0,1)",
        u"ZavBoxPlotX(A1:A10,0,0)", u"ZavBoxPlotY(1,10)", u"ZavScatterPlot(A1:A10,B1:B10,2)",
        u"ZavScatterPlot(A1:A10,M1:M10,0)", u"ZavQQPlotZValue(M:M,1)", u"ZavQQPlotSort(\"x\")"}) {
    CAPTURE(zavhost::Utf8FromUtf16(refused));
    CHECK(Shown(*engine, refused) == "#VALUE!");
  }
  CHECK(Shown(*engine, u"ZavQQPlotZValue(5,0)") == "#DIV/0!");
  // A changed cell changes what was summarised for an earlier question.
  engine->workbook().sheets[0].Set(9, 0, Value(60.0));
  CHECK(Shown(*engine, u"ZavBoxPlotCountOutliers(A1:A10,0)") == "1");
  CloseClean(*engine);
}

}  // namespace zavrel::tests
