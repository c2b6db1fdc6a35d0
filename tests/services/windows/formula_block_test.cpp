// Blocks of formulas in an emulated Excel.
#include "services/windows/formula_block.h"

#include "services/windows/excel_books.h"

namespace zavrel::services::tests {
namespace {

std::u16string LongFormula() {
  std::u16string formula = u"=IF({1;1},SUM(";
  for (int i = 0; i < 40; ++i) formula += (i == 0 ? u"" : u",") + std::u16string(u"ROW($A$1)+0");
  return formula + u"),0)";
}

FormulaBlock Sample() {
  FormulaBlock block{MsExcel::Block(4, 3), {}};
  block.cells.At(0, 0) = u"=1+2";
  block.cells.At(0, 1) = 2.5;
  block.cells.At(0, 2) = u"1/2";  // a text, not a date
  block.cells.At(1, 0) = true;
  block.cells.At(1, 1) = u"=B2*2";
  block.arrays.push_back({2, 1, 2, 1, LongFormula()});
  return block;
}

void Prepare(const OpenExcel& excel) {
  excel.range(u"A1").SetFormula(u"'=old");
  excel.range(u"B2").SetFormula(u"=SUM(A1:A9)");
  excel.range(u"C3").SetFormula(u"'123");
  excel.range(u"B4:C5").SetArrayFormula(u"={1,2;3,4}*2");
  excel.range(u"D9").SetFormula(u"beyond");
}

}  // namespace

TEST_CASE("a block of formulas, texts and long array formulas is written at once") {
  const OpenExcel excel;
  Prepare(excel);
  WriteFormulas(excel.range(u"B2"), Sample());
  CHECK(OpenExcel::Shown(excel.range(u"B2").Values().values[0]) == "3.000000");
  CHECK(OpenExcel::Shown(excel.range(u"D2").Values().values[0]) == "1/2");
  CHECK(OpenExcel::Shown(excel.range(u"C3").Values().values[0]) == "6.000000");
  CHECK(OpenExcel::Shown(excel.range(u"C5").Values().values[0]) == "40.000000");
  CHECK(excel.range(u"C4").CurrentArray().Address() == u"$C$4:$C$5");
  CHECK(excel.range(u"C4").ArrayFormula() == LongFormula());
  CHECK(OpenExcel::Shown(excel.range(u"A1").Values().values[0]) == "=old");
  CHECK(OpenExcel::Shown(excel.range(u"B4").Values().values[0]) == "-");
}

TEST_CASE("whatever call into Excel fails, the old contents return") {
  const OpenExcel excel;
  Prepare(excel);
  excel.application().SetCalculationMode(MsExcel::Calculation::kSemiautomatic);
  const std::string before = excel.Contents();
  std::string written;
  const std::size_t calls = FailEveryCall(
      excel.session.faults(), [&] { WriteFormulas(excel.range(u"B2"), Sample()); },
      [&](bool failed) {
        CHECK(excel.application().ScreenUpdating() == true);
        if (failed) {
          CHECK(excel.Contents() == before);
        } else {
          excel.range(u"A1:Z50").Clear();
          Prepare(excel);
        }
      });
  CHECK(calls > 30);
}

TEST_CASE("a part of an array, a bad formula and a protected sheet change nothing") {
  const OpenExcel excel;
  Prepare(excel);
  FormulaBlock block{MsExcel::Block(2, 2), {}};
  block.cells.At(0, 0) = 1.0;
  const std::string before = excel.Contents();
  CHECK_THROWS_AS(WriteFormulas(excel.range(u"A3"), block), VekCellPartOfArrayFormula);
  block.cells.At(1, 1) = u"=SUM(";
  CHECK_THROWS_AS(WriteFormulas(excel.range(u"A1"), block), VekExcelCallFailed);
  block.cells.At(1, 1) = 2.0;
  block.arrays.push_back({0, 1, 1, 1, u"=\"" + std::u16string(300, u'x') + u"\""});
  CHECK_THROWS_AS(WriteFormulas(excel.range(u"A1"), block), VekExcelCellFormulaWriteError);
  block.arrays.clear();
  excel.sheet().Protect(u"");
  CHECK_THROWS_AS(WriteFormulas(excel.range(u"A1"), block), VekExcelCallFailed);
  CHECK(excel.Contents() == before);
}

}  // namespace zavrel::services::tests
