#include "host/automation/cell_places.h"

#include <cmath>

namespace zavhost {
namespace {

/// In points, with the pixels of the usual font: 7 for a digit, 5 around.
double PointsOf(double characters) { return std::trunc(characters * 7 + 5) * 0.75; }

}  // namespace

double LeftOf(const SheetState& sheet, std::int32_t column) {
  double left = PointsOf(kColumnWidth) * column;
  for (const auto& [line, width] : sheet.column_widths) {
    if (line < column) left += PointsOf(width) - PointsOf(kColumnWidth);
  }
  for (const std::int32_t line : sheet.hidden_columns) {
    if (line >= column) break;
    const auto own = sheet.column_widths.find(line);
    left -= PointsOf(own == sheet.column_widths.end() ? kColumnWidth : own->second);
  }
  return left;
}

double TopOf(const SheetState& sheet, std::int32_t row) {
  double top = kRowHeight * row;
  for (const auto& [line, height] : sheet.row_heights) {
    if (line < row) top += height - kRowHeight;
  }
  for (const std::int32_t line : sheet.hidden_rows) {
    if (line >= row) break;
    const auto own = sheet.row_heights.find(line);
    top -= own == sheet.row_heights.end() ? kRowHeight : own->second;
  }
  return top;
}

CellPosition CellAt(const SheetState& sheet, double left, double top) {
  // The last line that begins at the point or before it.
  const auto line_at = [&](double point, std::int32_t count, const auto& place_of) {
    std::int32_t low = 0, high = count;
    while (high - low > 1) {
      const std::int32_t middle = low + (high - low) / 2;
      (place_of(sheet, middle) <= point ? low : high) = middle;
    }
    return low;
  };
  return {line_at(top, kSheetRows, TopOf), line_at(left, kSheetColumns, LeftOf)};
}

}  // namespace zavhost
