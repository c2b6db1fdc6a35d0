#pragma once
// Workbooks as a test writes them down, and what their cells and formulas show.

#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/calc/engine.h"

namespace zavhost::tests {

/// Columns of cells from row 1 down, each as "A: 1 | text | | TRUE | #N/A | \"12\"", on the sheet
/// "Data" or on one that is named: "Other!A: 7 | 8".
Workbook BookOf(std::initializer_list<std::string_view> columns);
// Tables of cases: one is ended by "|" or by the end of its line.

/// Formulas for the first sheet, each as "D1 = SUM(A1:A3)"; array formulas as "D1:E5 = A1:B5*2" or
/// "{D1} = SUM(A1:A3*2)".
void AddFormulas(Workbook& book, std::string_view table);
/// Changes cells of the first sheet, each as "A1 = 7".
void Edit(Engine& engine, std::string_view table);
/// Formulas beside what they show, each as "ZavMean(1,2) -> 1.5", or beside another formula whose
/// number theirs has to 13 digits: "ZavStdDev(1,2) ~ SQRT(0.5)".
void CheckFormulas(Engine& engine, std::string_view table);
/// Formulas that all show the same.
void CheckFormulas(Engine& engine, std::string_view shown, std::string_view table);
/// Ranges of the first sheet beside what they show, each as "A1:B2 -> 1,2;3,#N/A;".
void CheckCells(Engine& engine, std::string_view table);

/// As a cell shows it: "2.5", "#N/A", "TRUE", a text as it is, nothing for a blank cell. An array's
/// elements are divided by "," and its rows ended by ";".
std::string Shown(const Value& value);
std::string Shown(const Operand& operand);
/// A formula as an array formula in U2 of the first sheet.
std::string Shown(Engine& engine, std::string_view formula);
/// Cells of the first sheet.
std::string ShownCells(Engine& engine, std::string_view range);
/// As above, with texts in quotes.
std::string Quoted(const Value& value);
/// The cells of any sheet so: "1,\"a\";TRUE,;".
std::string Content(const Sheet& sheet, std::string_view range);
/// A formula's number; fails the test when it gives none.
double Number(Engine& engine, std::string_view formula);

std::vector<std::string> CasesIn(std::string_view table);
/// What stands in front of the last such divider and behind it, without blanks around.
std::pair<std::string, std::string> SplitAt(std::string_view text, std::string_view divider);

}  // namespace zavhost::tests
