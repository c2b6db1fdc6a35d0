#include <iostream>
#include <optional>

#include "analyses/analysis.h"
#include "host/cli/commands.h"
#include "host/cli/text_table.h"
#include "host/report/report_writer.h"
#include "host/workbook/text.h"
#include "host/xlsx/file_io.h"
#include "host/xlsx/unfinished_file.h"
#include "host/xlsx/xlsx_file.h"

namespace zavhost {
namespace {

using zavrel::analyses::Analysis;
using zavrel::analyses::Language;
using zavrel::analyses::ReportSheet;
using zavrel::analyses::Translated;

Language LanguageOf(const CommandLine& line) {
  return line.language == "de" ? Language::kGerman : Language::kEnglish;
}

void PrintAnalyses(Language language) {
  TextTable table({{"Analysis"},
                   {"Columns", Alignment::kRight},
                   {"--by"},
                   {"What it shows", Alignment::kLeft, 80}});
  for (const Analysis& analysis : zavrel::analyses::AllAnalyses()) {
    const char* const groups[] = {"", "optional", "two groups", "groups"};
    table.AddRow({std::string(analysis.name),
                  std::to_string(analysis.least_variables) + " to " +
                      std::to_string(analysis.most_variables),
                  groups[static_cast<std::size_t>(analysis.groups)],
                  Translated(analysis.about, language)});
  }
  std::cout << table.Render();
}

bool HasSuffix(const std::filesystem::path& file, std::u16string_view suffix) {
  return EqualIgnoringCase(zavrel::Utf16FromPath(file.extension()), suffix);
}

Workbook ReadData(const std::filesystem::path& file) {
  return HasSuffix(file, u".csv") ? ReadCsv(file) : ReadXlsx(file);
}

/// The new workbook. If it cannot be read, its writer did not notice that it is not whole.
Workbook ReadBack(const std::filesystem::path& written) {
  try {
    return ReadXlsx(written);
  } catch (const WorkbookError&) {
    throw WorkbookError("the report cannot be written completely; is the disk full?");
  }
}

struct Report {
  DataTable table;
  ReportSheet sheet;
};

Report MakeReport(const CommandLine& line, const Analysis& analysis) {
  const Workbook workbook = ReadData(line.data);
  if (workbook.sheets.empty()) throw WorkbookError("the workbook has no sheet");
  const Language language = LanguageOf(line);
  try {
    Report report{ReadDataTable(workbook.sheets.front()), {}};
    zavrel::analyses::SelectedData selected = SelectData(report.table, {line.names, line.by});
    selected.data.language = language;
    report.sheet = zavrel::analyses::MakeSheet(analysis, selected.data);
    for (const auto& note : selected.notes) std::cerr << "note: " << note.Text(language) << '\n';
    return report;
  } catch (const zavrel::analyses::DataProblem& problem) {
    throw WorkbookError(std::string(analysis.name) + ": " + problem.message().Text(language));
  }
}

/// Calculates the new workbook and writes it with its values.
int Calculate(const CommandLine& line, const std::filesystem::path& written) {
  std::unique_ptr<Engine> engine = StartEngine(line, ReadBack(written));
  const RecalculationReport report = engine->Recalculate();
  const int judged = FinishEngine(*engine);
  if (judged != kExitSuccess) return judged;
  XlsxChanges changes;
  changes.cells = report.written;
  changes.find_reference = [&engine](std::u16string_view text) {
    return engine->FindReference(text);
  };
  WriteXlsx(written, line.output, engine->workbook(), changes);
  for (const std::string& warning : report.warnings) std::cerr << "warning: " << warning << '\n';
  for (const std::string& error : report.errors) std::cerr << "error: " << error << '\n';
  return report.errors.empty() ? kExitSuccess : kExitWorkbook;
}

}  // namespace

int ReportCommand(const CommandLine& line) {
  if (line.list_analyses) {
    PrintAnalyses(LanguageOf(line));
    return kExitSuccess;
  }
  const Analysis* const analysis = zavrel::analyses::FindAnalysis(line.analysis);
  if (analysis == nullptr) {
    throw WorkbookError("there is no analysis " + line.analysis +
                        "; '" ZAVHOST_NAME " report --list' lists all of them");
  }
  const Report report = MakeReport(line, *analysis);
  std::optional<UnfinishedFile> working;
  NamingFile(line.output, [&] { working.emplace(line.output); });
  WriteReport(working->path(), report.table, report.sheet);
  const int code = Calculate(line, working->path());
  if (code == kExitSuccess) {
    std::cout << Translated(analysis->title, LanguageOf(line)) << ": " << PrintablePath(line.output)
              << '\n';
  }
  return code;
}

}  // namespace zavhost
