#include "host/report/data_table.h"

#include "host/workbook/text.h"

namespace zavhost {
namespace {

using zavrel::analyses::Area;
using zavrel::analyses::DataProblem;
using zavrel::analyses::kMostTableColumns;
using zavrel::analyses::kMostTableRows;

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

std::vector<std::u16string> CategoriesIn(const DataColumn& column) {
  std::vector<std::u16string> texts;
  for (const Value& value : column.cells) {
    if (!value.IsBlank() && !value.error()) texts.push_back(GeneralText(value));
  }
  return texts;
}

}  // namespace

DataTable ReadDataTable(const Sheet& sheet) {
  const std::optional<CellRange> used = sheet.used_range();
  if (!used || sheet.At(0, 0).IsBlank()) throw DataProblem({"column {0} has no heading", {"A"}});
  if (used->last_row < 1) throw DataProblem({"there are headings, but no rows below them", {}});
  DataTable table;
  table.rows = static_cast<std::size_t>(used->last_row);
  if (table.rows > kMostTableRows)
    throw DataProblem({"there are more than {0} rows", {std::to_string(kMostTableRows)}});
  for (std::int32_t column = 0; !sheet.At(0, column).IsBlank(); ++column) {
    if (table.columns.size() == kMostTableColumns)
      throw DataProblem({"there are more than {0} columns", {std::to_string(kMostTableColumns)}});
    table.columns.push_back(ReadColumn(sheet, column, table.rows));
  }
  return table;
}

zavrel::analyses::SelectedData SelectData(const DataTable& table,
                                          const zavrel::analyses::Selection& selection) {
  std::vector<zavrel::analyses::TableColumn> columns;
  for (const DataColumn& column : table.columns) {
    columns.push_back({column.name, CellsOf(table, columns.size()), column.numbers, column.others});
  }
  return zavrel::analyses::SelectData(
      columns, selection, [&](std::size_t number) { return CategoriesIn(table.columns[number]); });
}

}  // namespace zavhost
