// The values stored in a workbook against the computed ones.
#include <algorithm>
#include <cmath>
#include <iostream>

#include "host/cli/batch.h"
#include "host/cli/commands.h"
#include "host/cli/json_value.h"
#include "host/cli/run_report.h"
#include "host/workbook/cell_names.h"
#include "host/xlsx/xlsx_file.h"

namespace zavhost {
namespace {

/// Whether two values are the same, two numbers to so many significant digits.
bool Agree(const Value& stored, const Value& computed, int digits) {
  const double* one = stored.number();
  const double* other = computed.number();
  if (one == nullptr || other == nullptr) return stored == computed;
  const double size = std::max(std::fabs(*one), std::fabs(*other));
  // Equal numbers of any size agree, infinities among them.
  return *one == *other || std::fabs(*one - *other) <= size * std::pow(10.0, -digits);
}

nlohmann::ordered_json Difference(const Workbook& workbook, const CellAddress& cell,
                                  const RecalculatedCell& formula, const Value& stored) {
  const Sheet& sheet = workbook.sheets[cell.sheet];
  return {{"sheet", Utf8FromUtf16(sheet.name())},
          {"cell", Utf8FromUtf16(A1Text(cell.row, cell.column))},
          {"formula", Utf8FromUtf16(formula.formula)},
          {"stored", stored.IsBlank() ? "nothing" : ExactText(stored)},
          {"computed", ExactText(sheet.At(cell.row, cell.column))}};
}

/// One workbook, as a part of a batch.
int CheckWorkbook(const CommandLine& line) {
  const Workbook stored = ReadXlsx(line.workbooks.at(0));
  std::unique_ptr<Engine> engine = StartEngine(line, stored);
  const RecalculationReport report = engine->Recalculate();
  const int judged = FinishEngine(*engine);
  nlohmann::ordered_json result;
  result["formulas"] = report.computed;
  auto differences = nlohmann::ordered_json::array();
  for (const RecalculatedCell& formula : report.cells) {
    if (!formula.problem.empty() || formula.is_volatile) continue;
    for (const CellAddress& cell : CellsOf(formula)) {
      const Value& before = stored.sheets[cell.sheet].At(cell.row, cell.column);
      const Value& after = engine->workbook().sheets[cell.sheet].At(cell.row, cell.column);
      if (!Agree(before, after, line.digits))
        differences.push_back(Difference(engine->workbook(), cell, formula, before));
    }
  }
  int code = differences.empty() ? kExitSuccess : kExitDifferences;
  result["differences"] = std::move(differences);
  result["warnings"] = report.warnings;
  result["errors"] = report.errors;
  if (!report.errors.empty()) code = WorseExitCode(code, kExitWorkbook);
  if (report.doubtful > 0) code = WorseExitCode(code, kExitDoubtful);
  std::cout << JsonText(result, JsonLayout::kOneLine) << "\n" << std::flush;
  return WorseExitCode(code, judged);
}

}  // namespace

int CheckCommand(const CommandLine& line) {
  return line.part_of_batch ? CheckWorkbook(line) : BatchCommand(line);
}

}  // namespace zavhost
