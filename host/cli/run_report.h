#pragma once
// What a recalculation shows to the user, in each form.

#include <string>

#include "host/calc/engine.h"
#include "host/cli/command_line.h"

namespace zavhost {

/// The report as a text: a table by sheet with a line that sums up, JSON, or comma-separated lines.
/// Every cell of an array formula has its value in it.
std::string RunReport(const CommandLine& line, Engine& engine, const RecalculationReport& report,
                      bool written);

/// The cells of a formula: one, or those of an array formula's range, row by row.
std::vector<CellAddress> CellsOf(const RecalculatedCell& cell);

}  // namespace zavhost
