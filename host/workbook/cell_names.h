#pragma once
// Cells and ranges by their A1 names.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "formula/a1_reference.h"
#include "host/workbook/value.h"

namespace zavhost {

using formula::A1Text;
using formula::ColumnLetters;
using formula::kSheetColumns;
using formula::kSheetRows;

struct CellPosition {
  std::int32_t row = 0;
  std::int32_t column = 0;
  auto operator<=>(const CellPosition&) const = default;  // by row, then column
};

/// The cell that "B7" or "$B$7" names, in any letter case; nothing if the text is not such a name
/// or the cell lies outside a sheet.
std::optional<CellPosition> ParseCellName(std::string_view text);
/// "B7:C9", "A:A", "3:7"; "B7" for a single cell.
std::u16string A1Text(const CellRange& range);
/// The name of a sheet as it stands before "!" in a formula: in quotes if it needs them.
std::u16string QuotedSheetName(std::u16string_view name);
/// The range that "B7" or "B7:C9" names, with corners in any order.
std::optional<CellRange> ParseRangeName(std::string_view text);

}  // namespace zavhost
