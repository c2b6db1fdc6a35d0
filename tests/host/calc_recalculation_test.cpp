// Recalculation: which formulas, in what order, and what is said of the others.
#include <doctest/doctest.h>

#include <algorithm>

#include "host/planted_add_in.h"

namespace zavhost::tests {
namespace {

std::string CellShown(Engine& engine, std::int32_t row, std::int32_t column) {
  return Shown(engine.workbook().sheets[0].At(row, column));
}

std::string Joined(const std::vector<std::string>& lines) {
  std::string joined;
  for (const std::string& line : lines) joined += line + "\n";
  return joined;
}

}  // namespace

TEST_CASE("formulas are calculated in the order of their dependencies, not of the file") {
  Workbook workbook = SmallWorkbook();
  AddFormula(workbook, u"D1", u"GoodSum(D2:D3)*2");                // references met by the add-in
  AddFormula(workbook, u"D2", u"GoodInteger(D3)+GoodSum(A1:A5)");  // a cell met by the evaluator
  AddFormula(workbook, u"D3", u"GoodSumTwice(D4,D5)");
  AddFormula(workbook, u"D4", u"GoodSum(A1:A2)");
  AddFormula(workbook, u"D5", u"GoodSum(A3)");
  auto engine = PlantedEngine(std::move(workbook));
  const RecalculationReport report = engine->Recalculate();
  CHECK(Joined(report.errors).empty());
  CHECK(Joined(report.warnings).empty());
  CHECK(CellShown(*engine, 2, 3) == "6");
  CHECK(CellShown(*engine, 1, 3) == "9");
  CHECK(CellShown(*engine, 0, 3) == "30");
  CHECK(report.cells[0].formula == u"=GoodSum(D2:D3)*2");
  CHECK(Shown(report.cells[0].after) == "30");
  engine->CloseAddIn();
  CHECK(engine->judge().count() == 0);
}

TEST_CASE("a macro-type function gets what is stored, and is not called again") {
  Workbook workbook = SmallWorkbook();
  workbook.sheets[0].Set(1, 3, 100.0);
  AddFormula(workbook, u"D1", u"GoodMacroSum(D2)");
  AddFormula(workbook, u"D2", u"GoodSum(A1:A5)");
  auto engine = PlantedEngine(std::move(workbook));
  engine->Recalculate();
  CHECK(CellShown(*engine, 0, 3) == "100");
  CHECK(CellShown(*engine, 1, 3) == "15");
}

TEST_CASE("circles are reported once, and the rest is calculated") {
  Workbook workbook = SmallWorkbook();
  workbook.sheets[0].Set(0, 3, 7.0);
  AddFormula(workbook, u"D1", u"GoodSum(D2)");
  AddFormula(workbook, u"D2", u"GoodInteger(D3)");
  AddFormula(workbook, u"D3", u"GoodSum(D1:D2)+D5");
  AddFormula(workbook, u"D4", u"GoodSum(D1:D4)");
  AddFormula(workbook, u"D5", u"GoodSum(A1:A5)");
  AddFormula(workbook, u"D6", u"GoodSum(D1)+D5");
  auto engine = PlantedEngine(std::move(workbook));
  const RecalculationReport report = engine->Recalculate();
  CHECK(Joined(report.errors) ==
        "Sheet1!D1: circular reference through Sheet1!D2, Sheet1!D3; the stored values are kept\n"
        "Sheet1!D4: circular reference; the stored value is kept\n");
  CHECK(CellShown(*engine, 0, 3) == "7");
  CHECK(CellShown(*engine, 4, 3) == "15");
  CHECK(CellShown(*engine, 5, 3) == "22");
}

TEST_CASE("a chain of 100,000 formulas needs no deep stack, in whatever order it stands") {
  Workbook workbook = SmallWorkbook();
  constexpr std::int32_t kLength = 100'000;
  workbook.formula_texts.emplace_back(u"_xll.GoodInteger(-C2)+1");
  for (std::int32_t row = 0; row < kLength; ++row)
    workbook.formulas.push_back({{0, row, 2}, 0, {0, 0, 2}, {}});
  auto engine = PlantedEngine(std::move(workbook));
  const RecalculationReport report = engine->Recalculate();
  CHECK(Joined(report.errors).empty());
  CHECK(CellShown(*engine, 0, 2) == "100000");
  CHECK(report.cells[1].formula == u"=GoodInteger(-C3)+1");
}

TEST_CASE("long ranges of waiting cells are no square of work") {
  Workbook workbook = SmallWorkbook();
  constexpr std::int32_t kLength = 2'000;
  // Each sums everything below; the first one is asked for first.
  workbook.formula_texts.emplace_back(u"GoodSum(C2:C$2001)");
  for (std::int32_t row = 0; row < kLength; ++row)
    workbook.formulas.push_back({{0, row, 2}, 0, {0, 0, 2}, {}});
  workbook.sheets[0].Set(kLength, 2, 1e-300);
  auto engine = PlantedEngine(std::move(workbook));
  const RecalculationReport report = engine->Recalculate();
  CHECK(Joined(report.errors).empty());
  CHECK(CellShown(*engine, kLength - 3, 2) == "4E-300");
}

TEST_CASE("array formulas fill their range as Excel does") {
  Workbook workbook = SmallWorkbook();
  AddFormula(workbook, u"D1", u"_xll.GoodGrid(2,2)", "D1:F3");
  AddFormula(workbook, u"H1", u"GoodGrid(1,2)", "H1:J2");
  AddFormula(workbook, u"D5", u"GoodSum(A1:A5)", "D5:E5");
  AddFormula(workbook, u"D7", u"GoodGrid(2,2)");
  AddFormula(workbook, u"D8", u"GoodSum(D1:E2)", "D8");
  AddFormula(workbook, u"G8", u"GoodCaller()", "G8:H9");
  auto engine = PlantedEngine(std::move(workbook));
  const RecalculationReport report = engine->Recalculate();
  const auto row_shown = [&](std::int32_t row, std::int32_t column) {
    return CellShown(*engine, row, column) + "," + CellShown(*engine, row, column + 1) + "," +
           CellShown(*engine, row, column + 2);
  };
  CHECK(row_shown(0, 3) == "1,2,#N/A");
  CHECK(row_shown(1, 3) == "3,4,#N/A");
  CHECK(row_shown(2, 3) == "#N/A,#N/A,#N/A");
  CHECK(row_shown(0, 7) == "1,2,#N/A");
  CHECK(row_shown(1, 7) == "1,2,#N/A");
  CHECK(row_shown(4, 3) == "15,15,");
  CHECK(CellShown(*engine, 6, 3) == "1");
  CHECK(CellShown(*engine, 7, 3) == "10");
  CHECK(CellShown(*engine, 8, 7) == "sref 7,6:8,7");
  CHECK(report.cells[0].array.has_value());
}

TEST_CASE("what is recalculated, what is kept, and what is said of it") {
  Workbook workbook = SmallWorkbook();
  Sheet& sheet = workbook.sheets[0];
  for (std::int32_t row = 0; row < 12; ++row) sheet.Set(row, 3, 1000.0 + row);
  workbook.names.push_back({u"Total", u"_xll.GoodSum(Sheet1!$A$1:$A$5)", {}});
  workbook.names.push_back({u"Twice", u"Total*2", {}});
  workbook.names.push_back({u"Round", u"Round+1", {}});
  AddFormula(workbook, u"D1", u"_XLL.goodSUM(IF(_xll.GoodSum(A1)=1,A1:A5))");
  AddFormula(workbook, u"D2", u"Twice+1");
  AddFormula(workbook, u"D3", u"_xll.ZavNoSuch(A1)");
  AddFormula(workbook, u"D4", u"GoodSum(A1)&NOSUCH(1)");
  AddFormula(workbook, u"D5", u"GoodSum(Table1[x])");
  AddFormula(workbook, u"D6", u"A1+A2");
  AddFormula(workbook, u"D7", u"D1+1");
  AddFormula(workbook, u"D8", u"NOSUCH(D6:D7)");
  AddFormula(workbook, u"D9", u"D10");
  AddFormula(workbook, u"D10", u"D9+D4");
  AddFormula(workbook, u"D11", u"GoodSum(A1");
  AddFormula(workbook, u"D12", u"GoodSum(A1)+Round");
  auto engine = PlantedEngine(std::move(workbook));
  const RecalculationReport report = engine->Recalculate();
  CHECK(CellShown(*engine, 0, 3) == "15");
  CHECK(CellShown(*engine, 1, 3) == "31");
  CHECK(CellShown(*engine, 2, 3) == "#NAME?");
  for (std::int32_t row = 3; row < 12; ++row)
    CHECK(CellShown(*engine, row, 3) == std::to_string(1000 + row));
  CHECK(Joined(report.warnings) ==
        "Sheet1!D4 uses NOSUCH, which this host does not compute: its stored value is kept\n"
        "Sheet1!D5 uses Table1[x], which this host does not compute: its stored value is kept\n"
        "Sheet1!D7 depends on a recalculated cell but keeps its stored value\n"
        "Sheet1!D8 depends on a recalculated cell but keeps its stored value\n");
  REQUIRE(report.errors.size() == 2);
  CHECK(report.errors[0].rfind("Sheet1!D11: ", 0) == 0);
  CHECK(report.errors[1].rfind("Sheet1!D12: ", 0) == 0);
  REQUIRE(report.cells.size() == 5);
  CHECK(report.cells[0].formula == u"=goodSUM(IF(GoodSum(A1)=1,A1:A5))");
}

TEST_CASE("every formula, on request, in the order of what they need") {
  Workbook workbook = SmallWorkbook();
  AddFormula(workbook, u"D1", u"D2*2");
  AddFormula(workbook, u"D2", u"_xll.GoodSum(A1:A5)+D3");
  AddFormula(workbook, u"D3", u"ERROR.TYPE(1/0)");
  AddFormula(workbook, u"D4", u"NOSUCH(1)");
  workbook.sheets[0].Set(3, 3, 1003.0);
  EngineOptions options;
  options.every_formula = true;
  auto engine = PlantedEngine(std::move(workbook), options);
  const RecalculationReport report = engine->Recalculate();
  CHECK(CellShown(*engine, 0, 3) == "34");
  CHECK(CellShown(*engine, 3, 3) == "1003");
  CHECK(Joined(report.warnings) ==
        "Sheet1!D4 uses NOSUCH, which this host does not compute: its stored value is kept\n");
}

TEST_CASE("what another workbook's names give is kept") {
  Workbook workbook = SmallWorkbook();
  Sheet& sheet = workbook.sheets[0];
  for (std::int32_t row = 0; row < 9; ++row) sheet.Set(row, 3, 1000.0 + row);
  workbook.names.push_back({u"prices", u"Sheet1!$A$1:$A$5", {}});
  workbook.names.push_back({u"theirs", u"[1]!prices", {}});
  AddFormula(workbook, u"D1", u"GoodSum([1]!prices)");
  AddFormula(workbook, u"D2", u"GoodSum([1]Other!prices)");
  AddFormula(workbook, u"D3", u"GoodSum('[1]Oth er'!prices)");
  AddFormula(workbook, u"D4", u"GoodSum(theirs)");
  AddFormula(workbook, u"D5", u"GoodSum (theirs)");
  AddFormula(workbook, u"D6", u"GoodSum([0]!prices)");
  AddFormula(workbook, u"D7", u"GoodSum([0]Sheet1!A1:A2)+GoodSum('[0]Sheet1'!prices)");
  AddFormula(workbook, u"D8", u"goodsum (prices)");
  AddFormula(workbook, u"D9", u"GoodSum(prices (A1:B1))");  // taken for a function
  auto engine = PlantedEngine(std::move(workbook));
  const RecalculationReport report = engine->Recalculate();
  CHECK(Joined(report.errors).empty());
  CHECK(report.warnings.size() == 6);
  for (std::int32_t row = 0; row < 5; ++row)
    CHECK(CellShown(*engine, row, 3) == std::to_string(1000 + row));
  CHECK(CellShown(*engine, 5, 3) == "15");
  CHECK(CellShown(*engine, 6, 3) == "18");
  CHECK(CellShown(*engine, 7, 3) == "15");
  CHECK(CellShown(*engine, 8, 3) == "1008");
}

TEST_CASE("whole columns count whole in expressions, and only there") {
  Workbook workbook = SmallWorkbook();
  AddFormula(workbook, u"D1", u"GoodSum(0)+SUM(IF(A:A=\"\",1,0))", "D1");
  AddFormula(workbook, u"D2", u"GoodSum(0)+COLUMNS(TRANSPOSE(A:A))", "D2");
  AddFormula(workbook, u"D3", u"GoodSum(0)+SUM(A:A)+COUNT(Other!A:XFD)", "D3");
  AddFormula(workbook, u"D4", u"GoodDescribe(B:B)");
  AddFormula(workbook, u"D5", u"GoodSum(0)+SUM(IF(Other!A:I=\"\",1,0))", "D5");
  workbook.sheets.emplace_back(u"Other").Set(0, 0, 1.0);
  auto engine = PlantedEngine(std::move(workbook));
  const RecalculationReport report = engine->Recalculate();
  CHECK(Joined(report.errors).empty());
  CHECK(CellShown(*engine, 0, 3) == "1048571");
  CHECK(CellShown(*engine, 1, 3) == "1048576");
  CHECK(CellShown(*engine, 2, 3) == "16");
  CHECK(CellShown(*engine, 3, 3) == "5x1 of text of 4");
  CHECK(CellShown(*engine, 4, 3) == "#VALUE!");
}

TEST_CASE("many warnings become a count, and the formula limit is one clear error") {
  Workbook workbook = SmallWorkbook();
  AddFormula(workbook, u"D1", u"GoodSum(A1:A5)");
  for (int i = 1; i <= 50; ++i) {
    const std::u16string row = Utf16FromUtf8(std::to_string(i));
    AddFormula(workbook, u"E" + row, u"D1");
    AddFormula(workbook, u"F" + row, u"GoodSum(A1)+NOSUCH()");
  }
  {
    auto engine = PlantedEngine(workbook);
    const RecalculationReport report = engine->Recalculate();
    CHECK(report.warnings.size() == 42);
    CHECK(report.warnings[20].rfind("30 more formulas use", 0) == 0);
    CHECK(report.warnings[41].rfind("30 more formulas depend", 0) == 0);
  }
  for (int i = 2; i <= 5; ++i)
    AddFormula(workbook, u"D" + Utf16FromUtf8(std::to_string(i)), u"GoodSum(A1)");
  EngineOptions options;
  options.formula_limit = 4;
  auto engine = PlantedEngine(workbook, options);
  CHECK_THROWS_WITH_AS(engine->Recalculate(),
                       "the workbook has more than 4 formulas to recalculate", WorkbookError);
}

TEST_CASE("formulas that fill each other's cells, and array formulas without bounds") {
  Workbook workbook = SmallWorkbook();
  AddFormula(workbook, u"D1", u"GoodSum(A1)", "D1:E2");
  AddFormula(workbook, u"E2", u"GoodSum(A2)");
  auto engine = PlantedEngine(workbook);
  const RecalculationReport report = engine->Recalculate();
  CHECK(Joined(report.errors) ==
        "Sheet1!E2: two formulas fill the same cell; the stored value is kept\n");
  CHECK(CellShown(*engine, 1, 4) == "1");
  AddFormula(workbook, u"F1", u"GoodSum(A1)", "F1:Z1048576");
  auto hostile = PlantedEngine(std::move(workbook));
  CHECK_THROWS_AS(hostile->Recalculate(), WorkbookError);
}

TEST_CASE("progress goes on to the end") {
  Workbook workbook = SmallWorkbook();
  workbook.formula_texts.emplace_back(u"GoodSum(A1)");
  for (std::int32_t row = 0; row < 1000; ++row)
    workbook.formulas.push_back({{0, row, 2}, 0, {0, row, 2}, {}});
  std::vector<std::size_t> seen;
  EngineOptions options;
  options.progress = [&](std::size_t done, std::size_t total) {
    CHECK(total == 1000);
    seen.push_back(done);
  };
  auto engine = PlantedEngine(std::move(workbook), options);
  engine->Recalculate();
  CHECK(std::is_sorted(seen.begin(), seen.end()));
  CHECK(seen.size() > 2);
  CHECK(seen.back() == 1000);
}

TEST_CASE("what cannot be loaded gets one clear line") {
  Engine engine(SmallWorkbook());
  CHECK_THROWS_AS(engine.LoadAddIn("no-such-folder/no-such.xll"), WorkbookError);
  CHECK_THROWS_AS(engine.Evaluate(u"1+", {}), FormulaError);
  CHECK_THROWS_AS(engine.Announce(5), WorkbookError);
  CHECK(Shown(engine, u"GoodSum(1)") == "#NAME?");
  engine.LoadAddIn(PLANTED_FAULTS);
  CHECK(Shown(engine, u"GoodSum(1)") == "1");
  CHECK_THROWS_AS(engine.Announce(5), WorkbookError);  // this add-in has no companions
  engine.CloseAddIn(false);
  CHECK(engine.functions().empty());
  engine.LoadAddIn(PLANTED_FAULTS);
  CHECK(engine.functions().size() > 50);
  engine.CloseAddIn();
  CHECK(engine.judge().count() == 0);
}

}  // namespace zavhost::tests
