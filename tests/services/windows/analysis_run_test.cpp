// Analyses of the cells of an open workbook, in an emulated Excel.
#include "services/windows/analysis_run.h"

#include <algorithm>
#include <filesystem>

#include "host/report/report_writer.h"
#include "host/xlsx/xlsx_file.h"
#include "services/windows/excel_books.h"
#include "services/windows/hidden_storage.h"
#include "services/windows/workbook_table.h"

namespace zavrel::services::tests {
namespace {

using analyses::Analysis;
using analyses::Groups;
using analyses::Language;

const std::filesystem::path kIris = std::filesystem::path(ZAVREL_SOURCE_DIR) / "examples/iris.csv";
constexpr std::u16string_view kTable = u"A1:E151";
/// Two columns of numbers and the species, of which there are two.
constexpr std::u16string_view kTwoSpecies = u"C1:E101";

zavhost::ExcelSessionOptions WithAddIns() {
  return {.add_ins = {ZAVREL_ADD_IN, ZAVREL_DISTRIBUTIONS_ADD_IN}};
}

/// The flowers on a sheet with the name that reports without Excel give it.
struct Flowers : OpenExcel {
  explicit Flowers(zavhost::ExcelSessionOptions options = {}) : OpenExcel(std::move(options)) {
    session.Open(kIris);
    sheet().Rename(Utf16FromUtf8(zavhost::kDataSheet));
  }
};

std::u16string_view DataFor(const Analysis& analysis) {
  if (analysis.groups == Groups::kTwo) return kTwoSpecies;
  return analysis.most_variables == 2 ? u"A1:B151" : kTable;
}

std::string GroupsFor(const Analysis& analysis) {
  return analysis.groups == Groups::kNone ? "" : "Species";
}

/// For chart_comparison.py, which comes after this test. There is no such file yet.
std::filesystem::path ReportFile(const Analysis& analysis, const std::string& writer) {
  const std::filesystem::path folder = ZAVREL_REPORTS;
  std::filesystem::create_directories(folder);
  std::filesystem::path file = folder / (std::string(analysis.name) + "." + writer + ".xlsx");
  std::filesystem::remove(file);
  return file;
}

/// The description that the analysis writes, by the other writer, opened.
void OpenReport(OpenExcel& excel, const Analysis& analysis, const Flowers& flowers) {
  Progress progress;
  const WorkbookTable table(flowers.range(DataFor(analysis)), progress);
  const auto selected = SelectData(table.columns(), {{}, GroupsFor(analysis)},
                                   [&](std::size_t column) { return table.CategoriesOf(column); });
  const std::filesystem::path file = ReportFile(analysis, "report");
  const zavhost::Workbook data = zavhost::ReadCsv(kIris);
  WriteReport(file, zavhost::ReadDataTable(data.sheets.front()),
              MakeSheet(analysis, selected.data));
  excel.session.Open(file);
  excel.book().Worksheets().At(1).Activate();
}

/// The cells that a sheet uses: what they hold and what they show.
std::vector<std::string> CellsOf(const MsExcel::Worksheet& sheet) {
  const MsExcel::Range used = sheet.UsedRange();
  const MsExcel::Block formulas = used.Formulas(), values = used.Values();
  std::vector<std::string> cells = {Utf8FromUtf16(sheet.Name() + u" " + used.Address())};
  for (std::size_t i = 0; i < formulas.values.size(); ++i) {
    cells.push_back(OpenExcel::Shown(formulas.values[i]) + " | " +
                    OpenExcel::Shown(values.values[i]));
  }
  return cells;
}

}  // namespace

TEST_CASE("distributions are only fitted where their add-in is loaded") {
  CHECK(AnalysesMenu(Language::kGerman).find(u"distribution-fits") == std::u16string::npos);
  CHECK(AnalysesMenu(Language::kGerman).find(u"Boxplots") != std::u16string::npos);
  CHECK_THROWS_AS(AnalysisRun("distribution-fits", Language::kEnglish), VekAnalysisImpossible);
  REQUIRE(LoadLibraryW(std::filesystem::path(ZAVREL_DISTRIBUTIONS_ADD_IN).c_str()));
  CHECK(AnalysesMenu(Language::kGerman).find(u"distribution-fits") != std::u16string::npos);
}

TEST_CASE("the sheet in an open workbook is that of a report without Excel, cell by cell") {
  for (const Analysis& analysis : analyses::AllAnalyses()) {
    CAPTURE(analysis.name);
    // The functions' values take their time under Wine; their formulas say the same.
    const bool is_calculated = analysis.name == "summary" || analysis.name == "two-groups";
    const auto options = is_calculated ? WithAddIns() : zavhost::ExcelSessionOptions{};
    const Flowers open(options);
    OpenExcel reported(options);
    OpenReport(reported, analysis, open);
    AnalysisRun(analysis.name, Language::kEnglish)
        .Run(open.range(DataFor(analysis)), GroupsFor(analysis));
    const std::vector<std::string> written = CellsOf(open.sheet());
    const std::vector<std::string> expected = CellsOf(reported.sheet());
    REQUIRE(written.size() == expected.size());
    for (std::size_t i = 0; i < written.size(); ++i) CHECK(written[i] == expected[i]);
    CHECK(written.size() > 2);
    open.book().SaveCopyAs(Utf16FromPath(ReportFile(analysis, "open")));
  }
}

TEST_CASE("a heading that begins like a formula is a text in the sheet of an analysis") {
  const Flowers open;
  MsExcel::Block heading(1, 1);
  heading.values.front() = std::u16string(u"'=1+1");
  open.range(u"A1").SetFormulas(heading);
  AnalysisRun("summary", Language::kEnglish).Run(open.range(kTable), "");
  const std::vector<std::string> cells = CellsOf(open.sheet());
  CHECK(std::ranges::count(cells, " =1+1 |  =1+1") == 1);
  CHECK(std::ranges::count(cells, "=1+1 | 2") == 0);
}

TEST_CASE("data that do not suit get a reason, and the workbook stays as it was") {
  const OpenExcel excel;
  const auto fill = [&](std::u16string_view address, std::u16string_view text) {
    excel.range(address).SetFormula(text);
  };
  fill(u"A1", u"x");
  fill(u"B1", u"y");
  fill(u"A2:A9", u"=ROW()");
  fill(u"B2:B9", u"none");
  fill(u"D1", u"z");
  fill(u"D2:D5", u"=ROW()/3");
  fill(u"F2:F9", u"=ROW()");
  fill(u"H1:H9", u"=ROW()/7");
  struct Case {
    std::u16string_view cells;
    const char* by;
    const char* analysis;
    const char* reason;
  };
  const Case cases[] = {
      {u"B1:B9", "", "summary", "the data have no column of numbers"},
      {u"A1:B1", "", "summary", "there are headings, but no rows below them"},
      {u"A1:A2", "", "summary", "x has fewer than 2 numbers"},
      {u"F1:F9", "", "summary", "column F has no heading"},
      {u"J1:K9", "", "summary", "the data are blank"},
      {u"A1:A9,D1:D5", "", "summary", "the areas of the data do not have the same rows"},
      {u"A:XFD", "", "summary", "column C has no heading"},
      {u"A1:B9", "w", "summary", "the data have no column w"},
      {u"A1:B9", "y", "two-groups", "y does not have two groups"},
      {u"A1:A9,H1:H9", "", "summary", "column H has no heading"},
      {u"A1:A9", "", "correlations", "columns of numbers needed: 2, given: 1"},
  };
  std::string before = excel.Contents();
  for (const auto& [cells, by, analysis, reason] : cases) {
    std::string given;
    try {
      AnalysisRun(analysis, Language::kEnglish).Run(excel.range(cells), by);
    } catch (const VekAnalysisImpossible& impossible) {
      given = Utf8FromUtf16(std::get<std::u16string>(impossible.arguments()[1]));
    }
    CHECK(given == reason);
  }
  CHECK(excel.Contents() == before);
  excel.range(u"A3:A4").Merge();
  before = excel.Contents();
  CHECK_THROWS_AS(AnalysisRun("summary", Language::kEnglish).Run(excel.range(u"A1:A9"), ""),
                  VekAnalysisImpossible);
  CHECK_THROWS_AS(AnalysisRun("sumary", Language::kEnglish), VekParameterError);
  excel.book().Protect(u"");
  CHECK_THROWS_AS(AnalysisRun("summary", Language::kEnglish).Run(excel.range(u"D1:D5"), ""),
                  VekCantAddWorksheet);
  excel.book().Unprotect(u"");
  CHECK(excel.Contents() == before);
  // Whole columns mean their used part, and a protected sheet can be read.
  excel.sheet().Protect(u"");
  AnalysisRun("summary", Language::kGerman).Run(excel.range(u"D:D"), "");
  CHECK(excel.sheet().Name() == u"Maßzahlen");
}

TEST_CASE("the user is asked for the data and the groups, and may repeat the analysis") {
  Flowers excel;
  excel.range(u"E1").SetFormula(u"The\nspecies");
  const AnalysisRun summary("summary", Language::kEnglish);
  CHECK_FALSE(summary.Ask(excel.application()));  // Cancel
  excel.session.QueueInput(u"Data!$A$1:$E$151");
  excel.session.QueueInput(u"Data!$E$7");
  CHECK(summary.Ask(excel.application()));
  CHECK(excel.sheet().Name() == u"Summary");
  const std::vector<std::string> first = CellsOf(excel.sheet());
  RepeatAnalysis(excel.book(), Language::kEnglish);
  CHECK(excel.sheet().Name() == u"Summary (2)");
  const std::vector<std::string> second = CellsOf(excel.sheet());
  CHECK(second.size() == first.size());
  CHECK_FALSE(HiddenStorage(excel.book()).ReadAll().empty());
  // A group is needed here, and Cancel is Cancel.
  excel.session.QueueInput(u"Data!$A$1:$E$151");
  excel.session.QueueCancel();
  CHECK_FALSE(AnalysisRun("several-groups", Language::kEnglish).Ask(excel.application()));
  const OpenExcel empty;
  CHECK_THROWS_AS(RepeatAnalysis(empty.book(), Language::kEnglish), VekAnalysisImpossible);
}

TEST_CASE("whatever call into Excel fails, there is the whole sheet or none") {
  const OpenExcel excel;
  excel.range(u"A1").SetFormula(u"x");
  excel.range(u"A2:A9").SetFormula(u"=ROW()");
  const std::string before = excel.Contents();
  const AnalysisRun frequencies("frequencies", Language::kEnglish);
  const std::size_t calls = FailEveryCall(
      excel.session.faults(), [&] { frequencies.Run(excel.range(u"A1:A9"), ""); },
      [&](bool failed) {
        CHECK(excel.application().CalculationMode() == MsExcel::Calculation::kAutomatic);
        if (failed) {
          CHECK(excel.Contents() == before);
          return;
        }
        excel.application().SetDisplayAlerts(false);
        for (const char16_t* name : {u"Frequencies", u"ZavrelData"}) {
          const auto sheet = excel.book().Worksheets().Find(name);
          REQUIRE(sheet);
          sheet->SetVisible(MsExcel::Visibility::kVisible);
          sheet->Delete();
        }
        excel.application().SetDisplayAlerts(true);
      });
  CHECK(calls > 100);
}

}  // namespace zavrel::services::tests
