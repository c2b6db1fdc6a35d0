#include <fmt/format.h>

#include <iostream>
#include <map>
#include <set>

#include "host/cli/commands.h"
#include "host/cli/json_value.h"
#include "host/cli/text_table.h"
#include "host/xlsx/xlsx_file.h"

namespace zavhost {
namespace {

std::string Plural(std::size_t count, const char* thing) {
  return fmt::format("{} {}{}", count, thing, count == 1 ? "" : "s");
}

/// "{=...}" for an array formula, as Excel shows it.
std::string FormulaText(const RecalculatedCell& cell) {
  const std::string text = ToUtf8(cell.formula);
  return cell.array ? "{" + text + "}" : text;
}

std::string CellText(const RecalculatedCell& cell) {
  return ToUtf8(cell.array && !cell.array->IsSingleCell()
                    ? A1Text(*cell.array)
                    : A1Text(cell.address.row, cell.address.column));
}

/// The nearest text to the left of a cell in its row that no formula made: where people put what it
/// is.
std::string RowLabel(const Workbook& workbook, const std::set<CellAddress>& formulas,
                     CellAddress cell) {
  while (--cell.column >= 0) {
    const Value& left = workbook.sheets[cell.sheet].At(cell.row, cell.column);
    if (left.text() != nullptr && !left.text()->empty() && !formulas.contains(cell))
      return DisplayText(left);
  }
  return "";
}

bool Changed(const RecalculatedCell& cell) {
  return !cell.before.IsBlank() && !(cell.before == cell.after);
}

/// "3 changed since the workbook was saved, 2 had no value then".
std::string ChangesText(const RecalculationReport& report) {
  std::size_t changed = 0;
  std::size_t without_value = 0;
  for (const RecalculatedCell& cell : report.cells) {
    changed += Changed(cell) ? 1u : 0u;
    without_value += cell.before.IsBlank() ? 1u : 0u;
  }
  std::string text = fmt::format("{} changed since the workbook was saved", changed);
  if (without_value > 0) text += fmt::format(", {} had no value then", without_value);
  return text;
}

void PrintTable(const Workbook& workbook, const RecalculationReport& report) {
  std::set<CellAddress> formulas;
  for (const FormulaCell& formula : workbook.formulas) formulas.insert(formula.address);
  std::map<std::uint32_t, TextTable> tables;
  for (const RecalculatedCell& cell : report.cells) {
    TextTable& table =
        tables
            .try_emplace(cell.address.sheet, TextTable({{"Cell"},
                                                        {"Row", Alignment::kLeft, 30},
                                                        {"Formula", Alignment::kLeft, 56},
                                                        {"Value", Alignment::kRight, 32},
                                                        {"", Alignment::kLeft, 32}}))
            .first->second;
    table.AddRow({CellText(cell), RowLabel(workbook, formulas, cell.address), FormulaText(cell),
                  DisplayText(cell.after), Changed(cell) ? "was " + DisplayText(cell.before) : ""});
  }
  for (const auto& [sheet, table] : tables) {
    std::cout << '\n' << ToUtf8(workbook.sheets[sheet].name()) << "\n\n" << table.Render();
  }
  std::cout << '\n';
}

void PrintCsv(const Workbook& workbook, const RecalculationReport& report) {
  std::cout << "sheet,cell,formula,value\n";
  for (const RecalculatedCell& cell : report.cells) {
    std::cout << CsvField(ToUtf8(workbook.sheets[cell.address.sheet].name())) << ','
              << CellText(cell) << ',' << CsvField(FormulaText(cell)) << ','
              << CsvField(ExactText(cell.after)) << '\n';
  }
}

void PrintJson(const CommandLine& line, Engine& engine, const RecalculationReport& report) {
  nlohmann::ordered_json root;
  root["workbook"] = ToUtf8(engine.workbook().file_name);
  if (!line.output.empty()) root["output"] = ToUtf8(line.output.u16string());
  root["cells"] = nlohmann::ordered_json::array();
  for (const RecalculatedCell& cell : report.cells) {
    nlohmann::ordered_json entry;
    entry["sheet"] = ToUtf8(engine.workbook().sheets[cell.address.sheet].name());
    entry["cell"] = ToUtf8(A1Text(cell.address.row, cell.address.column));
    if (cell.array) entry["array"] = ToUtf8(A1Text(*cell.array));
    entry["formula"] = ToUtf8(cell.formula);
    entry["value"] = ToJson(cell.after);
    entry["before"] = ToJson(cell.before);
    root["cells"].push_back(std::move(entry));
  }
  root["warnings"] = report.warnings;
  root["errors"] = report.errors;
  root["violations"] = nlohmann::ordered_json::array();
  for (const Violation& violation : engine.judge().violations()) {
    root["violations"].push_back(DescribeViolation(violation));
  }
  std::cout << root.dump(2, ' ', false, nlohmann::json::error_handler_t::replace) << '\n';
}

std::vector<CellAddress> RecalculatedAddresses(const RecalculationReport& report) {
  std::vector<CellAddress> addresses;
  for (const RecalculatedCell& cell : report.cells) {
    if (!cell.array) {
      addresses.push_back(cell.address);
      continue;
    }
    for (std::int32_t row = cell.array->first_row; row <= cell.array->last_row; ++row) {
      for (std::int32_t column = cell.array->first_column; column <= cell.array->last_column;
           ++column) {
        addresses.push_back({cell.address.sheet, row, column});
      }
    }
  }
  return addresses;
}

}  // namespace

int RunCommand(const CommandLine& line) {
  std::unique_ptr<Engine> engine = StartEngine(line, ReadXlsx(line.workbook));
  const RecalculationReport report = engine->Recalculate();
  const int judged = FinishEngine(*engine);

  // A workbook computed by an add-in that broke the rules is not to be trusted, so it is not
  // written.
  const bool write = !line.output.empty() && judged == kExitSuccess;
  if (write)
    WriteXlsx(line.workbook, line.output, engine->workbook(), RecalculatedAddresses(report));

  switch (line.form) {
    case OutputForm::kTable:
      PrintTable(engine->workbook(), report);
      break;
    case OutputForm::kJson:
      PrintJson(line, *engine, report);
      break;
    case OutputForm::kCsv:
      PrintCsv(engine->workbook(), report);
      break;
  }
  std::cout.flush();
  for (const std::string& warning : report.warnings) std::cerr << "warning: " << warning << '\n';
  for (const std::string& error : report.errors) std::cerr << "error: " << error << '\n';
  if (line.form == OutputForm::kTable) {
    std::cout << Plural(report.cells.size(), "formula") << " recalculated, " << ChangesText(report);
    if (write) std::cout << "; written to " << ToUtf8(line.output.u16string());
    std::cout << ".\n";
  }
  if (judged != kExitSuccess) return judged;
  return report.errors.empty() ? kExitSuccess : kExitWorkbook;
}

}  // namespace zavhost
