#include "services/windows/workbook_table.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "platform/utf.h"

namespace zavrel::services {
namespace {

using analyses::Area;
using analyses::DataProblem;
using analyses::TableColumn;

/// Whole numbers up to here have all their digits.
constexpr double kMostWhole = 1e15;

constexpr double kShareOfReading = 0.4;

bool IsWhole(double number) {
  return std::floor(number) == number && std::abs(number) < kMostWhole;
}

/// Blank cells and errors have none. A number that is not whole has none that would be the same in
/// every language.
std::u16string TextOf(const MsExcel::CellValue& value) {
  if (const auto* text = std::get_if<std::u16string>(&value)) return *text;
  if (const auto* flag = std::get_if<bool>(&value)) return *flag ? u"TRUE" : u"FALSE";
  const auto* number = std::get_if<double>(&value);
  if (number == nullptr || !IsWhole(*number)) return u"";
  return Utf16FromUtf8(std::to_string(static_cast<std::int64_t>(*number)));
}

/// A range's cells, counted from 1.
struct Rectangle {
  explicit Rectangle(const MsExcel::Range& range)
      : row(range.Row()),
        column(range.Column()),
        last_row(row + range.RowCount() - 1),
        last_column(column + range.ColumnCount() - 1) {}

  void ClipTo(const Rectangle& other) {
    last_row = std::min(last_row, other.last_row);
    last_column = std::min(last_column, other.last_column);
  }

  long row, column, last_row, last_column;
};

/// What is meant by the cells that somebody has chosen.
Rectangle MeantBy(const MsExcel::Range& area) {
  if (area.CellCount() == 1) return Rectangle(area.CurrentRegion());
  Rectangle meant(area);
  meant.ClipTo(Rectangle(area.ParentSheet().UsedRange()));
  return meant;
}

}  // namespace

WorkbookTable::WorkbookTable(const MsExcel::Range& cells, Progress& progress)
    : sheet_(cells.ParentSheet()), sheet_name_(Utf8FromUtf16(sheet_.Name())) {
  for (const MsExcel::Range& area : cells.Areas()) AddArea(area, progress);
  const auto differs = [&](const TableColumn& column) {
    return column.cells.row != columns_.front().cells.row ||
           column.cells.rows != columns_.front().cells.rows;
  };
  if (std::ranges::any_of(columns_, differs))
    throw DataProblem({"the areas of the data do not have the same rows", {}});
}

void WorkbookTable::AddArea(const MsExcel::Range& area, Progress& progress) {
  const Rectangle meant = MeantBy(area);
  const long columns = meant.last_column - meant.column + 1;
  if (columns < 1 || meant.last_row < meant.row) throw DataProblem({"the data are blank", {}});
  if (columns_.size() + static_cast<std::size_t>(columns) > analyses::kMostTableColumns) {
    throw DataProblem(
        {"there are more than {0} columns", {std::to_string(analyses::kMostTableColumns)}});
  }
  const long rows = meant.last_row - meant.row;  // without the headings
  if (rows == 0) throw DataProblem({"there are headings, but no rows below them", {}});
  if (static_cast<std::size_t>(rows) > analyses::kMostTableRows)
    throw DataProblem({"there are more than {0} rows", {std::to_string(analyses::kMostTableRows)}});
  if (sheet_.Area(meant.row, meant.column, rows + 1, columns).HasMergedCells())
    throw DataProblem({"the data have merged cells", {}});
  const Area headings{sheet_name_, static_cast<std::uint32_t>(meant.row - 1),
                      static_cast<std::uint16_t>(meant.column - 1), 1,
                      static_cast<std::uint16_t>(columns)};
  const MsExcel::Block names = ValuesOf(headings);
  for (std::uint16_t i = 0; i < headings.columns; ++i) {
    const Area place = headings.Part(0, i);
    TableColumn column{Utf8FromUtf16(TextOf(names.At(0, i))),
                       place.Part(1, 0, static_cast<std::uint32_t>(rows))};
    if (column.name.empty()) throw DataProblem({"column {0} has no heading", {place.Column()}});
    progress.StepUnlessCancelled(Utf16FromUtf8(column.name), kShareOfReading * i / columns);
    for (const MsExcel::CellValue& value : ValuesOf(column.cells).values) {
      if (std::holds_alternative<double>(value)) {
        ++column.numbers;
      } else if (!std::holds_alternative<std::monostate>(value)) {
        ++column.others;
      }
    }
    columns_.push_back(std::move(column));
  }
}

MsExcel::Block WorkbookTable::ValuesOf(const Area& cells) const {
  return sheet_
      .Area(static_cast<long>(cells.row) + 1, cells.column + 1L, static_cast<long>(cells.rows),
            cells.columns)
      .Values();
}

std::vector<std::u16string> WorkbookTable::CategoriesOf(std::size_t column) const {
  const TableColumn& meant = columns_[column];
  std::vector<std::u16string> texts;
  for (const MsExcel::CellValue& value : ValuesOf(meant.cells).values) {
    if (const auto* number = std::get_if<double>(&value); number && !IsWhole(*number)) {
      throw DataProblem(
          {"{0} has numbers that are not whole: groups have names or whole numbers", {meant.name}});
    }
    texts.push_back(TextOf(value));
  }
  return texts;
}

std::string WorkbookTable::HeadingOf(const MsExcel::Range& cell, const MsExcel::Range& cells) {
  const Rectangle table = MeantBy(cells.Areas().front());
  const MsExcel::Range heading = cells.ParentSheet().Area(table.row, cell.Column(), 1, 1);
  const std::u16string text = TextOf(heading.Value());
  return Utf8FromUtf16(text.empty() ? cell.Address() : text);
}

}  // namespace zavrel::services
