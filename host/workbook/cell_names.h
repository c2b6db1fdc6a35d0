#pragma once
// The size of a sheet, and cells by their A1 names.

#include <cstdint>
#include <optional>
#include <string_view>

#include "host/workbook/value.h"

namespace zavhost {

inline constexpr std::int32_t kSheetRows = 1'048'576;
inline constexpr std::int32_t kSheetColumns = 16'384;

struct CellPosition {
  std::int32_t row = 0;
  std::int32_t column = 0;
  auto operator<=>(const CellPosition&) const =
      default;  // by row, then column; NOLINT(modernize-use-nullptr)
};

/// The cell that "B7" or "$B$7" names, in any letter case; nothing when the text is no such name or
/// the cell lies outside a sheet.
std::optional<CellPosition> ParseCellName(std::string_view text);
/// The range that "B7" or "B7:C9" names, corners in any order.
std::optional<CellRange> ParseRangeName(std::string_view text);

}  // namespace zavhost
