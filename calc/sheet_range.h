#pragma once

#include <algorithm>
#include <compare>
#include <cstdint>
#include <optional>

namespace zavcalc {

/// A range of one sheet. Rows and columns count from 0.
struct SheetRange {
  std::int32_t sheet = 0;
  std::int32_t first_column = 0;
  std::int32_t first_row = 0;
  std::int32_t last_column = 0;
  std::int32_t last_row = 0;
  auto operator<=>(const SheetRange&) const = default;
};

inline SheetRange CellAt(std::int32_t sheet, std::int32_t column, std::int32_t row) {
  return {sheet, column, row, column, row};
}

inline std::int32_t RowsOf(const SheetRange& range) { return range.last_row - range.first_row + 1; }
inline std::int32_t ColumnsOf(const SheetRange& range) {
  return range.last_column - range.first_column + 1;
}

inline std::optional<SheetRange> Common(const SheetRange& a, const SheetRange& b) {
  const SheetRange common{a.sheet, std::max(a.first_column, b.first_column),
                          std::max(a.first_row, b.first_row),
                          std::min(a.last_column, b.last_column), std::min(a.last_row, b.last_row)};
  const bool is_empty = common.first_column > common.last_column ||
                        common.first_row > common.last_row || a.sheet != b.sheet;
  return is_empty ? std::nullopt : std::optional(common);
}

}  // namespace zavcalc
