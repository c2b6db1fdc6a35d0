#pragma once
// Where the cells of a sheet are, in points from its top left.

#include "host/automation/book.h"

namespace zavhost {

/// Of a new sheet: in characters, and in points.
inline constexpr double kColumnWidth = 8.43, kRowHeight = 15;

double LeftOf(const SheetState& sheet, std::int32_t column);
double TopOf(const SheetState& sheet, std::int32_t row);
/// The cell at a point.
CellPosition CellAt(const SheetState& sheet, double left, double top);

}  // namespace zavhost
