#include <iostream>

#include "host/cli/batch.h"
#include "host/cli/commands.h"
#include "host/cli/run_report.h"
#include "host/xlsx/xlsx_file.h"

namespace zavhost {
namespace {

/// Whoever names the workbook as its own output may not know that it would be replaced.
void RefuseOwnInput(const CommandLine& line) {
  std::error_code ignored;
  if (!line.in_place && std::filesystem::equivalent(line.workbooks.at(0), line.output, ignored)) {
    throw WorkbookError(PrintablePath(line.output) +
                        ": the output would replace the workbook; --in-place does that");
  }
}

void Write(const CommandLine& line, Engine& engine, const RecalculationReport& report) {
  XlsxChanges changes;
  changes.cells = report.written;
  changes.values_only = line.values_only;
  changes.find_reference = [&engine](std::u16string_view text) {
    return engine.FindReference(text);
  };
  WriteXlsx(line.workbooks.at(0), OutputOf(line), engine.workbook(), changes);
}

}  // namespace

int RunCommand(const CommandLine& line) {
  if (IsBatch(line)) return BatchCommand(line);
  const std::filesystem::path& workbook = line.workbooks.at(0);
  RefuseOwnInput(line);
  std::unique_ptr<Engine> engine = StartEngine(line, ReadXlsx(workbook));
  const RecalculationReport report = engine->Recalculate();
  const int judged = FinishEngine(*engine);

  // If the add-in broke the rules, the workbook cannot be trusted and is not written.
  const bool write = !OutputOf(line).empty() && judged == kExitSuccess;
  if (write) Write(line, *engine, report);

  if (line.part_of_batch) {
    std::cout << BatchLine(report, write) << std::flush;
  } else {
    // Written at once, since a console without a buffer would write every piece separately.
    std::cout << RunReport(line, *engine, report, write) << std::flush;
    if (report.not_listed > 0)
      std::cerr << "note: " << Plural(report.not_listed, "more formula")
                << " recalculated and not listed; --all lists every formula\n";
    for (const std::string& warning : report.warnings) std::cerr << "warning: " << warning << '\n';
    for (const std::string& error : report.errors) std::cerr << "error: " << error << '\n';
  }
  if (judged != kExitSuccess) return judged;
  if (!report.errors.empty()) return kExitWorkbook;
  return report.doubtful > 0 ? kExitDoubtful : kExitSuccess;
}

}  // namespace zavhost
