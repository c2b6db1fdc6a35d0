#pragma once
// The report of a recalculation to the user, in each form.

#include <string>

#include "host/calc/engine.h"
#include "host/cli/command_line.h"

namespace zavhost {

/// The report as text: a table for each sheet and a summary line, JSON, or comma-separated lines.
/// It contains the value of every cell of an array formula.
std::string RunReport(const CommandLine& line, Engine& engine, const RecalculationReport& report,
                      bool written);

/// The report of a workbook in a batch: counts, warnings and errors as JSON in one line.
std::string BatchLine(const RecalculationReport& report, bool written);

/// The workbook that the command writes; empty if it writes none.
const std::filesystem::path& OutputOf(const CommandLine& line);

/// The cells of a formula: one, or those of an array formula's range, row by row.
std::vector<CellAddress> CellsOf(const RecalculatedCell& cell);

}  // namespace zavhost
