// Recalculation: which formulas, in what order, and what is said of the others.
#include <doctest/doctest.h>

#include <algorithm>

#include "host/planted_add_in.h"

namespace zavhost::tests {
namespace {

std::string Joined(const std::vector<std::string>& lines) {
  std::string joined;
  for (const std::string& line : lines) joined += line + "\n";
  return joined;
}

/// A small workbook with these formulas, and 1000, 1001 ... stored in the first cells of column D.
Workbook WorkbookWith(std::string_view formulas, std::int32_t stored = 0) {
  Workbook workbook = SmallWorkbook();
  for (std::int32_t row = 0; row < stored; ++row) workbook.sheets[0].Set(row, 3, 1000.0 + row);
  AddFormulas(workbook, formulas);
  return workbook;
}

/// The same formula, shared by the first cells of column C.
Workbook WorkbookSharing(const char16_t* formula, std::int32_t count, bool relative = true) {
  Workbook workbook = SmallWorkbook();
  workbook.formula_texts.emplace_back(formula);
  for (std::int32_t row = 0; row < count; ++row)
    workbook.formulas.push_back({{0, row, 2}, 0, {0, relative ? 0 : row, 2}, {}});
  return workbook;
}

}  // namespace

TEST_CASE("formulas are calculated in the order of their dependencies, not of the file") {
  // References met by the add-in, and a cell met by the evaluator.
  auto engine = PlantedEngine(WorkbookWith(R"(
      D1 = GoodSum(D2:D3)*2 | D2 = GoodInteger(D3)+GoodSum(A1:A5) | D3 = GoodSumTwice(D4,D5)
      D4 = GoodSum(A1:A2) | D5 = GoodSum(A3))"));
  const RecalculationReport report = engine->Recalculate();
  CHECK(Joined(report.errors).empty());
  CHECK(Joined(report.warnings).empty());
  CheckCells(*engine, "D1:D3 -> 30;9;6;");
  CHECK(report.cells[0].formula == u"=GoodSum(D2:D3)*2");
  CHECK(Shown(report.cells[0].after) == "30");
  engine->CloseAddIns();
  CHECK(engine->judge().count() == 0);
}

TEST_CASE("a macro-type function gets what is stored, and is not called again") {
  auto engine = PlantedEngine(WorkbookWith("D1 = GoodMacroSum(D2) | D2 = GoodSum(A1:A5)", 2));
  engine->Recalculate();
  CheckCells(*engine, "D1:D2 -> 1001;15;");
}

TEST_CASE("circles are reported once, and the rest is calculated") {
  auto engine = PlantedEngine(WorkbookWith(R"(
      D1 = GoodSum(D2) | D2 = GoodInteger(D3) | D3 = GoodSum(D1:D2)+D5 | D4 = GoodSum(D1:D4)
      D5 = GoodSum(A1:A5) | D6 = GoodSum(D1)+D5)",
                                           1));
  CHECK(Joined(engine->Recalculate().errors) ==
        "Sheet1!D1: circular reference through Sheet1!D2, Sheet1!D3; the stored values are kept\n"
        "Sheet1!D4: circular reference; the stored value is kept\n");
  CheckCells(*engine, "D1 -> 1000; | D5:D6 -> 15;1015;");
}

TEST_CASE("a chain of 100,000 formulas needs no deep stack, in whatever order it stands") {
  auto engine = PlantedEngine(WorkbookSharing(u"GoodInteger(-C2)+1", 100'000));
  const RecalculationReport report = engine->Recalculate();
  CHECK(Joined(report.errors).empty());
  CheckCells(*engine, "C1 -> 100000;");
  CHECK(report.cells[1].formula == u"=GoodInteger(-C3)+1");
}

TEST_CASE("long ranges of waiting cells are no square of work") {
  // Each sums everything below; the first one is asked for first.
  Workbook workbook = WorkbookSharing(u"GoodSum(C2:C$2001)", 2'000);
  workbook.sheets[0].Set(2'000, 2, 1e-300);
  auto engine = PlantedEngine(std::move(workbook));
  CHECK(Joined(engine->Recalculate().errors).empty());
  CheckCells(*engine, "C1998 -> 4E-300;");
}

TEST_CASE("array formulas fill their range as Excel does") {
  auto engine = PlantedEngine(WorkbookWith(R"(
      D1:F3 = GoodGrid(2,2) | H1:J2 = GoodGrid(1,2) | D5:E5 = GoodSum(A1:A5) | D7 = GoodGrid(2,2)
      {D8} = GoodSum(D1:E2) | G8:H9 = GoodCaller())"));
  const RecalculationReport report = engine->Recalculate();
  CheckCells(*engine, R"(
      D1:F3 -> 1,2,#N/A;3,4,#N/A;#N/A,#N/A,#N/A; | H1:J2 -> 1,2,#N/A;1,2,#N/A; | D5:F5 -> 15,15,;
      D7:D8 -> 1;10; | H9 -> sref 7,6:8,7;)");
  CHECK(report.cells[0].array.has_value());
}

TEST_CASE("what is recalculated, what is kept, and what is said of it") {
  Workbook workbook = WorkbookWith(R"(
      D1 = _XLL.goodSUM(IF(_xll.GoodSum(A1)=1,A1:A5)) | D2 = Twice+1 | D3 = _xll.ZavNoSuch(A1) | D4 = GoodSum(A1)&NOSUCH(1)
      D5 = GoodSum([1]Prices!A1) | D6 = A1+A2 | D7 = D1+1 | D8 = NOSUCH(D6:D7) | D9 = D10
      D10 = D9+D4 | D11 = GoodSum(A1 | D12 = GoodSum(A1)+Round)",
                                   12);
  workbook.names.push_back({u"Total", u"_xll.GoodSum(Sheet1!$A$1:$A$5)", {}});
  workbook.names.push_back({u"Twice", u"Total*2", {}});
  workbook.names.push_back({u"Round", u"Round+1", {}});
  auto engine = PlantedEngine(std::move(workbook));
  const RecalculationReport report = engine->Recalculate();
  CheckCells(*engine, "D1:D12 -> 15;31;#NAME?;1003;1004;3;16;1007;1008;1009;1010;1011;");
  CHECK(Joined(report.warnings) ==
        "Sheet1!D4 uses NOSUCH, which this host does not compute: its stored value is kept\n"
        "Sheet1!D5 uses [1]Prices!A1, which this host does not compute: its stored value is kept\n"
        "Sheet1!D8 uses NOSUCH, which this host does not compute: its stored value is kept and may "
        "be wrong, since Sheet1!D6 has changed\n");
  REQUIRE(report.errors.size() == 3);
  CHECK(report.errors[0].starts_with("Sheet1!D9: circular"));
  CHECK(report.errors[1].starts_with("Sheet1!D11: "));
  CHECK(report.errors[2].starts_with("Sheet1!D12: "));
  CHECK(report.computed == 5);
  CHECK(report.doubtful == 1);
  CHECK(report.cells[0].formula == u"=goodSUM(IF(GoodSum(A1)=1,A1:A5))");
}

TEST_CASE("doubts reach every value that depends on them, and no other") {
  // E1 has no stored value; E2 has one, whose input changes; E3 has one, whose input does not.
  Workbook workbook = WorkbookWith(R"(
      E1 = NOSUCH(A1) | E2 = NOSUCH(D6) | E3 = NOSUCH(A1) | D1 = E1+1 | D2 = GoodSum(E1:E3) | D3 = E3+1
      D4 = IF(A1=1,E3,E1) | D5 = SUM(D1) | D6 = A1*2 | D7 = GoodSum(D7) | D8 = D7+1)",
                                   8);
  workbook.sheets[0].Set(1, 4, 7.0);
  workbook.sheets[0].Set(2, 4, 8.0);
  auto engine = PlantedEngine(std::move(workbook));
  const RecalculationReport report = engine->Recalculate();
  CHECK(Joined(report.warnings) ==
        "Sheet1!E1 uses NOSUCH, which this host does not compute, and has no stored value\n"
        "Sheet1!E2 uses NOSUCH, which this host does not compute: its stored value is kept and may "
        "be wrong, since Sheet1!D6 has changed\n"
        "Sheet1!E3 uses NOSUCH, which this host does not compute: its stored value is kept\n"
        "Sheet1!D1 depends on Sheet1!E1 and may be wrong\n"
        "Sheet1!D2 depends on Sheet1!E1 and may be wrong\n"
        "Sheet1!D5 depends on Sheet1!E1 and may be wrong\n"
        "Sheet1!D8 depends on Sheet1!D7 and may be wrong\n");
  CHECK(report.doubtful == 6);
  CheckCells(*engine, "D3:D4 -> 9;8;");
}

TEST_CASE("every formula is calculated, in the order of what it needs") {
  auto engine = PlantedEngine(WorkbookWith(R"(
      D1 = D2*2 | D2 = _xll.GoodSum(A1:A5)+D3 | D3 = ERROR.TYPE(1/0) | D5 = A1+1)",
                                           3));
  const RecalculationReport report = engine->Recalculate();
  CheckCells(*engine, "D1:D3 -> 34;17;2; | D5 -> 2;");
  CHECK(report.computed == 4);
  CHECK(report.changed == 3);
  CHECK(report.without_value == 1);
  CHECK(report.written.size() == 4);
}

TEST_CASE("a result that differs in its last bits only keeps the bits of the file") {
  Workbook workbook = WorkbookWith("D1 = 0.1+0.2 | D2 = GoodInteger(D1*10)*-0.1 | D3 = 0.1+0.2");
  workbook.sheets[0].Set(0, 3, 0.3);
  workbook.sheets[0].Set(1, 3, 0.3);
  workbook.sheets[0].Set(2, 3, 0.3 + 1e-14);
  auto engine = PlantedEngine(std::move(workbook));
  const RecalculationReport report = engine->Recalculate();
  const Sheet& sheet = engine->workbook().sheets[0];
  CHECK(sheet.At(0, 3) == Value(0.3));
  CHECK(sheet.At(1, 3) == Value(3 * 0.1));  // one that uses the add-in has its own
  CHECK(sheet.At(2, 3) == Value(0.1 + 0.2));
  CHECK(report.changed == 2);
}

TEST_CASE(
    "random numbers stay the same until the next seed, and are marked with all that use them") {
  const auto outcome = [](std::uint64_t seed) {
    EngineOptions options;
    options.random_seed = seed;
    options.now = 45000.5;
    auto engine =
        PlantedEngine(WorkbookWith("D1 = RAND() | D2 = D1+D3 | D3 = RAND() | D4 = NOW()"), options);
    const RecalculationReport report = engine->Recalculate();
    for (const RecalculatedCell& cell : report.cells) CHECK(cell.is_volatile);
    CheckFormulas(*engine, "D2=D1+D3 -> TRUE | D1=D3 -> FALSE | D4 -> 45000.5");
    return ShownCells(*engine, "D1:D3");
  };
  CHECK(outcome(1) == outcome(1));
  CHECK(outcome(1) != outcome(2));
}

namespace {

/// A workbook whose formulas in these cells are dynamic array formulas, each with its stored range.
Workbook Spilling(std::string_view arrays, std::string_view others = "") {
  Workbook workbook = SmallWorkbook();
  AddFormulas(workbook, arrays);
  for (FormulaCell& formula : workbook.formulas) formula.is_dynamic = true;
  AddFormulas(workbook, others);
  return workbook;
}

}  // namespace

TEST_CASE("dynamic array formulas fill the shape of their result") {
  // D1:D2 held two values before; the new ones take five cells, and what reads them knows it. A
  // second one depends on the shape of the first.
  Workbook workbook = Spilling("D1:D2 = A1:A5*10 | F1:F1 = D1#+1 | H1:H3 = A1:A2",
                               "E9 = SUM(D1#)+COUNT(F1:F9) | C1 = D5");
  workbook.sheets[0].Set(0, 3, 1.0);
  workbook.sheets[0].Set(1, 3, 2.0);
  workbook.sheets[0].Set(2, 7, 99.0);
  auto engine = PlantedEngine(std::move(workbook));
  const RecalculationReport report = engine->Recalculate();
  CheckCells(*engine,
             "D1:D6 -> 10;20;30;40;50;; | F1:F6 -> 11;21;31;41;51;; | E9 -> 155; | C1 -> 50; | "
             "H1:H3 -> 1;2;;");
  CHECK(engine->workbook().formulas[0].array == CellRange{0, 3, 4, 3});
  CHECK(report.cells.size() == 1);  // only D1 had a value
  CHECK(report.written.size() == 5 + 5 + 3 + 2);
  CHECK(Joined(engine->Recalculate().errors).empty());
}

TEST_CASE("a cell in the way of a dynamic array blocks it") {
  Workbook workbook = Spilling("D1:D1 = A1:A5 | F1:F1 = A1:A3 | F3:F3 = A1:A2 | XFD1:XFD1 = A1:B2",
                               "G1 = D1# | G2 = F1#");
  workbook.sheets[0].Set(3, 3, Value(u"mine"));
  auto engine = PlantedEngine(std::move(workbook));
  engine->Recalculate();
  CheckCells(
      *engine,
      "D1:D5 -> #SPILL!;;;mine;; | F1:F4 -> #SPILL!;;1;2; | XFD1 -> #SPILL!; | G1 -> #SPILL!;");
}

TEST_CASE("what another workbook's names give is kept") {
  // "prices (A1:B1)" is taken for a function.
  Workbook workbook = WorkbookWith(R"(
      D1 = GoodSum([1]!prices) | D2 = GoodSum([1]Other!prices) | D3 = GoodSum('[1]Oth er'!prices)
      D4 = GoodSum(theirs) | D5 = GoodSum (theirs) | D6 = GoodSum([0]!prices)
      D7 = GoodSum([0]Sheet1!A1:A2)+GoodSum('[0]Sheet1'!prices) | D8 = goodsum (prices)
      D9 = GoodSum(prices (A1:B1)))",
                                   9);
  workbook.names.push_back({u"prices", u"Sheet1!$A$1:$A$5", {}});
  workbook.names.push_back({u"theirs", u"[1]!prices", {}});
  auto engine = PlantedEngine(std::move(workbook));
  const RecalculationReport report = engine->Recalculate();
  CHECK(Joined(report.errors).empty());
  CHECK(report.warnings.size() == 6);
  CheckCells(*engine, "D1:D9 -> 1000;1001;1002;1003;1004;15;18;15;1008;");
}

TEST_CASE("whole columns count whole in expressions, and only there") {
  Workbook workbook = WorkbookWith(R"(
      {D1} = GoodSum(0)+SUM(IF(A:A="",1,0)) | {D2} = GoodSum(0)+COLUMNS(TRANSPOSE(A:A))
      {D3} = GoodSum(0)+SUM(A:A)+COUNT(Other!A:XFD) | D4 = GoodDescribe(B:B)
      {D5} = GoodSum(0)+SUM(IF(Other!A:I="",1,0)))");
  workbook.sheets.emplace_back(u"Other").Set(0, 0, 1.0);
  auto engine = PlantedEngine(std::move(workbook));
  CHECK(Joined(engine->Recalculate().errors).empty());
  CheckCells(*engine, "D1:D5 -> 1048571;1048576;16;5x1 of text of 4;#VALUE!;");
}

TEST_CASE("many warnings become a count, and the formula limit is one clear error") {
  Workbook workbook = WorkbookWith("D1 = GoodSum(A1:A5)");
  for (int i = 1; i <= 50; ++i) {
    const std::string row = std::to_string(i);
    AddFormulas(workbook, "E" + row + " = F" + row + " | F" + row + " = GoodSum(A1)+NOSUCH()");
  }
  const RecalculationReport report = PlantedEngine(workbook)->Recalculate();
  CHECK(report.warnings.size() == 42);
  CHECK(report.warnings[20].starts_with("30 more formulas use"));
  CHECK(report.warnings[41].starts_with("30 more values depend"));
  CHECK(report.doubtful == 100);

  AddFormulas(workbook,
              "D2 = GoodSum(A1) | D3 = GoodSum(A1) | D4 = GoodSum(A1) | D5 = GoodSum(A1)");
  EngineOptions options;
  options.formula_limit = 104;
  CHECK_THROWS_WITH_AS(
      PlantedEngine(workbook, options)->Recalculate(),
      "the workbook has more than 104 formulas; the option --max-formulas allows more",
      WorkbookError);
}

TEST_CASE("formulas that fill each other's cells, and array formulas without bounds") {
  Workbook workbook = WorkbookWith("D1:E2 = GoodSum(A1) | E2 = GoodSum(A2)");
  auto engine = PlantedEngine(workbook);
  CHECK(Joined(engine->Recalculate().errors) ==
        "Sheet1!E2: two formulas fill the same cell; the stored value is kept\n");
  CheckCells(*engine, "E2 -> 1;");
  AddFormulas(workbook, "F1:H1048576 = GoodSum(A1)");
  CHECK_THROWS_AS(PlantedEngine(std::move(workbook))->Recalculate(), WorkbookError);
  workbook = Spilling("F1 = SEQUENCE(1048576) | G1 = SEQUENCE(1048576) | H1 = SEQUENCE(1048576)");
  CHECK_THROWS_AS(PlantedEngine(std::move(workbook))->Recalculate(), WorkbookError);
}

TEST_CASE("progress goes on to the end") {
  std::vector<std::size_t> seen;
  EngineOptions options;
  options.progress = [&](std::size_t done, std::size_t total) {
    CHECK(total == 1000);
    seen.push_back(done);
  };
  PlantedEngine(WorkbookSharing(u"GoodSum(A1)", 1000, false), options)->Recalculate();
  CHECK(std::is_sorted(seen.begin(), seen.end()));
  CHECK(seen.size() > 2);
  CHECK(seen.back() == 1000);
}

TEST_CASE("what cannot be loaded gets one clear line") {
  Engine engine(SmallWorkbook());
  CHECK_THROWS_AS(engine.LoadAddIn("no-such-folder/no-such.xll"), WorkbookError);
  CHECK_THROWS_AS(engine.Evaluate(u"1+", {}), FormulaError);
  CHECK_THROWS_AS(engine.Announce(5), WorkbookError);
  CHECK(Shown(engine, "GoodSum(1)") == "#NAME?");
  engine.LoadAddIn(PLANTED_FAULTS);
  CHECK(Shown(engine, "GoodSum(1)") == "1");
  CHECK_THROWS_AS(engine.Announce(5), WorkbookError);  // this add-in has no companions
  engine.CloseAddIns(false);
  CHECK(engine.functions().empty());
  engine.LoadAddIn(PLANTED_FAULTS);
  CHECK(engine.functions().size() > 50);
  engine.CloseAddIns();
  CHECK(engine.judge().count() == 0);
}

}  // namespace zavhost::tests
