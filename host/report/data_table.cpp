#include "host/report/data_table.h"

#include <algorithm>
#include <set>

#include "host/workbook/text.h"

namespace zavhost {
namespace {

using zavrel::analyses::Area;
using zavrel::analyses::Data;
using zavrel::analyses::Grouping;
using zavrel::analyses::Variable;

constexpr std::size_t kMostColumns = 1000;
constexpr std::size_t kMostRows = 1'000'000;

std::string TextOfCell(const Value& value) { return Utf8FromUtf16(GeneralText(value)); }

DataColumn ReadColumn(const Sheet& sheet, std::int32_t column, std::size_t rows) {
  DataColumn read{.name = TextOfCell(sheet.At(0, column)), .cells = {}};
  read.cells.resize(rows);
  for (const Sheet::Entry& entry : sheet.column(column)) {
    if (entry.row < 1 || static_cast<std::size_t>(entry.row) > rows) continue;
    read.cells[static_cast<std::size_t>(entry.row - 1)] = entry.value;
    if (entry.value.number() != nullptr) {
      ++read.numbers;
    } else if (!entry.value.IsBlank()) {
      ++read.others;
    }
  }
  return read;
}

Area CellsOf(const DataTable& table, std::size_t column) {
  return {kDataSheet, 1, static_cast<std::uint16_t>(column), static_cast<std::uint32_t>(table.rows),
          1};
}

std::size_t ColumnNamed(const DataTable& table, const std::string& name) {
  const auto has_name = [&](const DataColumn& column) {
    return EqualIgnoringCase(Utf16FromUtf8(column.name), Utf16FromUtf8(name));
  };
  const auto found = std::ranges::find_if(table.columns, has_name);
  if (found == table.columns.end()) throw WorkbookError("the data have no column " + name);
  return static_cast<std::size_t>(found - table.columns.begin());
}

Variable VariableOf(const DataTable& table, std::size_t column, std::vector<std::string>& notes) {
  const DataColumn& cells = table.columns[column];
  if (cells.numbers == 0) throw WorkbookError("the column " + cells.name + " has no numbers");
  if (cells.others > 0) {
    notes.push_back(
        cells.name + ": " + std::to_string(cells.others) +
        (cells.others == 1 ? " cell that is no number is" : " cells that are no numbers are") +
        " left out");
  }
  return {cells.name, CellsOf(table, column), cells.numbers};
}

/// In the order of ZavCategoryNames: by character code, each once whatever its letter case.
Grouping GroupingOf(const DataTable& table, std::size_t column) {
  std::set<std::u16string> known;
  std::vector<std::u16string> names;
  for (const Value& value : table.columns[column].cells) {
    if (value.IsBlank() || value.error()) continue;
    std::u16string text = GeneralText(value);
    if (!text.empty() && known.insert(LowerCase(text)).second) names.push_back(std::move(text));
  }
  std::ranges::sort(names);
  Grouping grouping{table.columns[column].name, CellsOf(table, column), {}};
  for (const std::u16string& name : names) grouping.categories.push_back(Utf8FromUtf16(name));
  return grouping;
}

}  // namespace

DataTable ReadDataTable(const Sheet& sheet) {
  const std::optional<CellRange> used = sheet.used_range();
  if (!used || sheet.At(0, 0).IsBlank())
    throw WorkbookError("the first sheet has no headings in its first row");
  if (used->last_row < 1) throw WorkbookError("there are headings, but no rows below them");
  DataTable table;
  table.rows = static_cast<std::size_t>(used->last_row);
  if (table.rows > kMostRows)
    throw WorkbookError("there are more than " + std::to_string(kMostRows) + " rows");
  for (std::int32_t column = 0; !sheet.At(0, column).IsBlank(); ++column) {
    if (table.columns.size() == kMostColumns)
      throw WorkbookError("there are more than " + std::to_string(kMostColumns) + " columns");
    table.columns.push_back(ReadColumn(sheet, column, table.rows));
  }
  return table;
}

Data SelectData(const DataTable& table, const Selection& selection,
                std::vector<std::string>& notes) {
  Data data;
  std::optional<std::size_t> by;
  if (!selection.by.empty()) {
    by = ColumnNamed(table, selection.by);
    data.grouping = GroupingOf(table, *by);
  }
  for (const std::string& name : selection.columns)
    data.variables.push_back(VariableOf(table, ColumnNamed(table, name), notes));
  if (!selection.columns.empty()) return data;
  for (std::size_t i = 0; i < table.columns.size(); ++i) {
    const DataColumn& column = table.columns[i];
    // A column of texts with a number among them is not meant.
    if (by != i && column.numbers > column.others)
      data.variables.push_back(VariableOf(table, i, notes));
  }
  if (data.variables.empty()) throw WorkbookError("the data have no column of numbers");
  return data;
}

}  // namespace zavhost
