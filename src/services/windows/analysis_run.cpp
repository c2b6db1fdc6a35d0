#include "services/windows/analysis_run.h"

#include <algorithm>
#include <sstream>

#include "contracts/message_ids.h"
#include "diagnostics/vek_exception.h"
#include "platform/letter_case.h"
#include "platform/utf.h"
#include "services/progress_dialog.h"
#include "services/windows/calm_excel.h"
#include "services/windows/hidden_storage.h"
#include "services/windows/report_in_workbook.h"
#include "services/windows/try_to.h"
#include "services/windows/workbook_table.h"

namespace zavrel::services {
namespace {

using analyses::Analysis;
using analyses::Groups;
using analyses::Language;
using analyses::Message;

constexpr const char* kPlace = "AnalysisRun";
constexpr const wchar_t* kDistributions = L"ZavrelDistributions8_x64.xll";
/// The item of the workbook that says what "repeat" repeats: the lines of LatestRun.
constexpr std::u16string_view kLatestRun = u"latest analysis";

[[noreturn]] void ThrowImpossible(const Analysis& analysis, const Message& reason,
                                  Language language) {
  throw VekAnalysisImpossible(
      kPlace, messages::kMessageAnalysisImpossible,
      {Utf16FromUtf8(Translated(analysis.title, language)), Utf16FromUtf8(reason.Text(language))});
}

/// True if the second add-in is there for an analysis that needs it: Excel has loaded it into this
/// process.
bool HasItsFunctions(const Analysis& analysis) {
  return !analysis.of_distributions || GetModuleHandleW(kDistributions) != nullptr;
}

/// What the latest analysis was made of.
struct LatestRun {
  std::string analysis;
  std::string sheet;
  std::string cells;
  std::string by;

  std::u16string Text() const {
    return Utf16FromUtf8(analysis + '\n' + sheet + '\n' + cells + '\n' + by);
  }
  static std::optional<LatestRun> Of(const MsExcel::Workbook& book) {
    const auto item = HiddenStorage(book).Read(kLatestRun);
    const auto* stored = item ? std::get_if<std::u16string>(&*item) : nullptr;
    if (stored == nullptr) return std::nullopt;
    std::istringstream lines(Utf8FromUtf16(*stored));
    LatestRun run;
    for (std::string* line : {&run.analysis, &run.sheet, &run.cells}) std::getline(lines, *line);
    std::getline(lines, run.by, '\0');  // a heading may have several lines
    return run;
  }
};

std::set<std::u16string> SheetNames(const MsExcel::Workbook& book) {
  std::set<std::u16string> names;
  for (const MsExcel::Worksheet& sheet : book.Sheets().All()) names.insert(LowerCase(sheet.Name()));
  return names;
}

std::string EscapedForXml(std::string_view text) {
  std::string escaped;
  for (const char c : text) {
    if (c == '&') {
      escaped += "&amp;";
    } else if (c == '<') {
      escaped += "&lt;";
    } else if (c == '"') {
      escaped += "&quot;";
    } else {
      escaped += c;
    }
  }
  return escaped;
}

}  // namespace

AnalysisRun::AnalysisRun(std::string_view analysis, Language language)
    : analysis_(analyses::FindAnalysis(analysis)), language_(language) {
  if (analysis_ == nullptr) throw VekParameterError(kPlace, messages::kMessageParameterError);
  if (!HasItsFunctions(*analysis_))
    ThrowImpossible(*analysis_, {"the add-in of the distributions is not loaded", {}}, language_);
}

std::optional<MsExcel::Range> AnalysisRun::AskFor(const MsExcel::Application& application,
                                                  std::string_view prompt,
                                                  std::u16string_view proposal) const {
  return application.AskForRange(Utf16FromUtf8(Translated(prompt, language_)),
                                 Utf16FromUtf8(Translated(analysis_->title, language_)), proposal);
}

bool AnalysisRun::Ask(const MsExcel::Application& application) const {
  std::u16string proposal;
  if (const auto selected = application.SelectedCells()) {
    proposal = (selected->CellCount() == 1 ? selected->CurrentRegion() : *selected).Address();
  }
  const auto data =
      AskFor(application, "Cells with the data, with headings in the first row:", proposal);
  if (!data) return false;
  std::string by;
  if (analysis_->groups != Groups::kNone) {
    const bool needed = analysis_->groups != Groups::kOptional;
    const auto cell = AskFor(
        application,
        needed ? "A cell of the column that divides the rows into groups:"
               : "A cell of the column that divides the rows into groups; Cancel for no groups:",
        u"");
    if (!cell && needed) return false;
    if (cell) by = WorkbookTable::HeadingOf(*cell, *data);
  }
  Run(*data, by);
  return true;
}

void AnalysisRun::Run(const MsExcel::Range& data, std::string_view by) const {
  const MsExcel::Application application = data.ParentSheet().ParentBook().ExcelApplication();
  void* const window = ULongToHandle(static_cast<ULONG>(application.Hwnd()));
  try {
    WithProgress(window, Utf16FromUtf8(Translated(analysis_->title, language_)),
                 [&](Progress& progress) { RunWith(progress, data, by); });
  } catch (const analyses::DataProblem& problem) {
    ThrowImpossible(*analysis_, problem.message(), language_);
  }
}

void AnalysisRun::RunWith(Progress& progress, const MsExcel::Range& data,
                          std::string_view by) const {
  const WorkbookTable table(data, progress);
  const MsExcel::Workbook book = table.sheet().ParentBook();
  auto selected = SelectData(table.columns(), {{}, std::string(by)},
                             [&](std::size_t column) { return table.CategoriesOf(column); });
  selected.data.language = language_;
  selected.data.taken_names = SheetNames(book);
  CalmExcel calm(book.ExcelApplication());
  const MsExcel::Worksheet sheet =
      AddReport(table.sheet(), MakeSheet(*analysis_, selected.data), progress);
  try {
    const LatestRun latest{std::string(analysis_->name), Utf8FromUtf16(table.sheet().Name()),
                           Utf8FromUtf16(data.Address()), std::string(by)};
    HiddenStorage(book).Store(kLatestRun, latest.Text());
  } catch (...) {
    TryTo([&] { sheet.Delete(); });
    throw;
  }
  calm.LeaveAt(sheet);
}

void RepeatAnalysis(const MsExcel::Workbook& book, Language language) {
  const auto latest = LatestRun::Of(book);
  const auto sheet = latest ? book.Worksheets().Find(Utf16FromUtf8(latest->sheet)) : std::nullopt;
  if (!sheet) {
    throw VekAnalysisImpossible(kPlace, messages::kMessageNoAnalysisToRepeat, {book.Name()});
  }
  AnalysisRun(latest->analysis, language)
      .Run(sheet->Range(Utf16FromUtf8(latest->cells)), latest->by);
}

std::u16string AnalysesMenu(Language language) {
  std::string menu = R"(<menu xmlns="http://schemas.microsoft.com/office/2009/07/customui">)";
  for (const Analysis& analysis : analyses::AllAnalyses()) {
    if (!HasItsFunctions(analysis)) continue;
    std::string id(analysis.name);
    std::ranges::replace(id, '-', '_');
    menu += "<button id=\"zavrel_" + id + "\" tag=\"" + std::string(analysis.name) +
            "\" onAction=\"ZavrelAnalysisChosen\" label=\"" +
            EscapedForXml(Translated(analysis.title, language)) + "\" screentip=\"" +
            EscapedForXml(Translated(analysis.title, language)) + "\" supertip=\"" +
            EscapedForXml(Translated(analysis.about, language)) + "\"/>";
  }
  return Utf16FromUtf8(menu + "</menu>");
}

}  // namespace zavrel::services
