#include "host/cli/run_report.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <vector>

#include "host/cli/commands.h"
#include "host/cli/json_value.h"
#include "host/cli/text_table.h"
#include "host/workbook/cell_names.h"

namespace zavhost {
namespace {

constexpr std::int32_t kLabelColumns = 64;  // how many columns to the left are searched for a label

const Value& ValueIn(const Workbook& workbook, const CellAddress& cell) {
  return workbook.sheets[cell.sheet].At(cell.row, cell.column);
}

std::string SheetName(const Workbook& workbook, const CellAddress& cell) {
  return Utf8FromUtf16(workbook.sheets[cell.sheet].name());
}

std::string CellName(const CellAddress& cell) {
  return Utf8FromUtf16(A1Text(cell.row, cell.column));
}

/// "{=...}" for an array formula, as Excel shows it.
std::string FormulaText(const RecalculatedCell& cell) {
  const std::string text = Utf8FromUtf16(cell.formula);
  return cell.array ? "{" + text + "}" : text;
}

/// The nearest text to the left of a cell in its row that is not the result of a formula, where
/// people usually put a description.
std::string RowLabel(const Workbook& workbook, const std::vector<CellAddress>& formulas,
                     CellAddress cell) {
  const std::int32_t last = std::max(0, cell.column - kLabelColumns);
  while (--cell.column >= last) {
    const Value& left = ValueIn(workbook, cell);
    if (left.text() != nullptr && !left.text()->empty() &&
        !std::ranges::binary_search(formulas, cell))
      return DisplayText(left);
  }
  return "";
}

std::string Remark(const RecalculatedCell& cell) {
  std::string remark;
  if (!cell.problem.empty()) {
    remark = "kept: " + cell.problem;
  } else if (cell.changed) {
    remark = cell.before == cell.after ? "changed" : "was " + DisplayText(cell.before);
  }
  if (cell.doubt.empty()) return remark;
  return (remark.empty() ? "may be wrong: " : remark + "; may be wrong: ") + cell.doubt;
}

/// "91 formulas recalculated, 3 changed since the workbook was saved, 2 had no stored value".
std::string Summary(const RecalculationReport& report) {
  std::string text = fmt::format("{} recalculated, {} changed since the workbook was saved",
                                 Plural(report.computed, "formula"), report.changed);
  if (report.without_value > 0)
    text += fmt::format(", {} had no stored value", report.without_value);
  if (report.kept > 0) text += fmt::format(", {} kept", report.kept);
  if (report.doubtful > 0) text += fmt::format(", {} may be wrong", report.doubtful);
  return text;
}

std::string TableForm(const Workbook& workbook, const RecalculationReport& report) {
  std::vector<CellAddress> formulas;
  for (const FormulaCell& formula : workbook.formulas) formulas.push_back(formula.address);
  std::ranges::sort(formulas);
  std::map<std::uint32_t, TextTable> tables;
  for (const RecalculatedCell& cell : report.cells) {
    TextTable& table =
        tables
            .try_emplace(cell.address.sheet, TextTable({{"Cell"},
                                                        {"Row", Alignment::kLeft, 30},
                                                        {"Formula", Alignment::kLeft, 56},
                                                        {"Value", Alignment::kRight, 32},
                                                        {"", Alignment::kLeft, 40}}))
            .first->second;
    for (const CellAddress& place : CellsOf(cell)) {
      const bool first = place == cell.address;
      table.AddRow({CellName(place), RowLabel(workbook, formulas, place),
                    first ? FormulaText(cell) : "", DisplayText(ValueIn(workbook, place)),
                    first ? Remark(cell) : ""});
    }
  }
  std::string text;
  for (const auto& [sheet, table] : tables) {
    text += "\n" + PrintableUtf8(workbook.sheets[sheet].name()) + "\n\n" + table.Render();
  }
  return text + "\n";
}

std::string CsvForm(const Workbook& workbook, const RecalculationReport& report) {
  std::string text = "sheet,cell,formula,value,problem\n";
  for (const RecalculatedCell& cell : report.cells) {
    for (const CellAddress& place : CellsOf(cell)) {
      text += fmt::format("{},{},{},{},{}\n", CsvField(SheetName(workbook, place)), CellName(place),
                          CsvField(FormulaText(cell)),
                          CsvField(ExactText(ValueIn(workbook, place))), CsvField(cell.problem));
    }
  }
  return text;
}

/// A value for one cell, rows of values for an array formula's range.
nlohmann::ordered_json ValuesOf(const Workbook& workbook, const RecalculatedCell& cell) {
  if (!cell.array || cell.array->IsSingleCell()) return ToJson(cell.after);
  auto rows = nlohmann::ordered_json::array();
  for (const CellAddress& place : CellsOf(cell)) {
    if (place.column == cell.array->first_column) rows.push_back(nlohmann::ordered_json::array());
    rows.back().push_back(ToJson(ValueIn(workbook, place)));
  }
  return rows;
}

std::string JsonForm(const CommandLine& line, Engine& engine, const RecalculationReport& report,
                     bool written) {
  nlohmann::ordered_json root;
  const Workbook& workbook = engine.workbook();
  root["workbook"] = Utf8FromUtf16(workbook.file_name);
  if (written) root["output"] = Utf8FromPath(OutputOf(line));
  root["cells"] = nlohmann::ordered_json::array();
  for (const RecalculatedCell& cell : report.cells) {
    nlohmann::ordered_json entry;
    entry["sheet"] = SheetName(workbook, cell.address);
    entry["cell"] = CellName(cell.address);
    if (cell.array) entry["array"] = Utf8FromUtf16(A1Text(*cell.array));
    entry["formula"] = Utf8FromUtf16(cell.formula);
    entry["value"] = ValuesOf(workbook, cell);
    entry["before"] = ToJson(cell.before);
    entry["changed"] = cell.changed;
    if (!cell.problem.empty()) entry["problem"] = cell.problem;
    if (!cell.doubt.empty()) entry["doubt"] = cell.doubt;
    root["cells"].push_back(std::move(entry));
  }
  if (report.not_listed > 0) root["not_listed"] = report.not_listed;
  root["doubtful"] = report.doubtful;
  root["warnings"] = report.warnings;
  root["errors"] = report.errors;
  root["violations"] = nlohmann::ordered_json::array();
  for (const Violation& violation : engine.judge().violations()) {
    root["violations"].push_back(DescribeViolation(violation));
  }
  return JsonText(root, JsonLayout::kIndented) + "\n";
}

}  // namespace

const std::filesystem::path& OutputOf(const CommandLine& line) {
  return line.in_place ? line.workbooks.at(0) : line.output;
}

std::vector<CellAddress> CellsOf(const RecalculatedCell& cell) {
  if (!cell.array) return {cell.address};
  std::vector<CellAddress> cells;
  for (std::int32_t row = cell.array->first_row; row <= cell.array->last_row; ++row) {
    for (std::int32_t column = cell.array->first_column; column <= cell.array->last_column;
         ++column) {
      cells.push_back({cell.address.sheet, row, column});
    }
  }
  return cells;
}

std::string BatchLine(const RecalculationReport& report, bool written) {
  nlohmann::ordered_json root{{"formulas", report.computed},
                              {"changed", report.changed},
                              {"without_value", report.without_value},
                              {"kept", report.kept},
                              {"doubtful", report.doubtful},
                              {"warnings", report.warnings},
                              {"errors", report.errors}};
  if (written) root["written"] = true;
  return JsonText(root, JsonLayout::kOneLine) + "\n";
}

std::string RunReport(const CommandLine& line, Engine& engine, const RecalculationReport& report,
                      bool written) {
  switch (line.form) {
    case OutputForm::kJson:
      return JsonForm(line, engine, report, written);
    case OutputForm::kCsv:
      return CsvForm(engine.workbook(), report);
    case OutputForm::kTable:
      break;
  }
  std::string text = TableForm(engine.workbook(), report) + Summary(report);
  if (written) text += "; written to " + PrintablePath(OutputOf(line));
  return text + ".\n";
}

}  // namespace zavhost
