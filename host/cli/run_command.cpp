#include <iostream>

#include "host/cli/batch.h"
#include "host/cli/commands.h"
#include "host/cli/run_report.h"
#include "host/xlsx/xlsx_file.h"

namespace zavhost {
namespace {

/// The cells with new values; cells that keep their stored value are not touched.
std::vector<CellAddress> ComputedCells(const RecalculationReport& report) {
  std::vector<CellAddress> cells;
  for (const RecalculatedCell& cell : report.cells) {
    if (!cell.problem.empty()) continue;
    const std::vector<CellAddress> own = CellsOf(cell);
    cells.insert(cells.end(), own.begin(), own.end());
  }
  return cells;
}

}  // namespace

int RunCommand(const CommandLine& line) {
  if (IsBatch(line)) return BatchCommand(line);
  const std::filesystem::path& workbook = line.workbooks.at(0);
  std::unique_ptr<Engine> engine = StartEngine(line, ReadXlsx(workbook));
  const RecalculationReport report = engine->Recalculate();
  const int judged = FinishEngine(*engine);

  // If the add-in broke the rules, the workbook cannot be trusted and is not written.
  const bool write = !line.output.empty() && judged == kExitSuccess;
  if (write) WriteXlsx(workbook, line.output, engine->workbook(), ComputedCells(report));

  if (line.part_of_batch) {
    std::cout << BatchLine(report, write) << std::flush;
  } else {
    // Written at once, since a console without a buffer would write every piece separately.
    std::cout << RunReport(line, *engine, report, write) << std::flush;
    for (const std::string& warning : report.warnings) std::cerr << "warning: " << warning << '\n';
    for (const std::string& error : report.errors) std::cerr << "error: " << error << '\n';
  }
  if (judged != kExitSuccess) return judged;
  return report.errors.empty() ? kExitSuccess : kExitWorkbook;
}

}  // namespace zavhost
