#include "calc/cell_set.h"

#include <algorithm>

namespace zavcalc {

void CellSet::Add(const SheetRange& cells) {
  for (std::int32_t column = cells.first_column; column <= cells.last_column; ++column)
    columns_[column].push_back({cells.first_row, cells.last_row});
}

void CellSet::Sort() {
  for (auto& [column, rows] : columns_) std::ranges::sort(rows, {}, &Rows::first);
}

template <class Visit>
void CellSet::ForEachWithin(const SheetRange& range, const Visit& visit) const {
  auto column = columns_.lower_bound(range.first_column);
  for (; column != columns_.end() && column->first <= range.last_column; ++column) {
    auto rows = std::ranges::lower_bound(column->second, range.first_row, {}, &Rows::last);
    for (; rows != column->second.end() && rows->first <= range.last_row; ++rows) {
      const SheetRange part{range.sheet, column->first, std::max(rows->first, range.first_row),
                            column->first, std::min(rows->last, range.last_row)};
      if (!visit(part)) return;
    }
  }
}

bool CellSet::Touches(const SheetRange& range) const {
  bool is_found = false;
  ForEachWithin(range, [&](const SheetRange&) {
    is_found = true;
    return false;
  });
  return is_found;
}

std::vector<SheetRange> CellSet::Within(const SheetRange& range) const {
  std::vector<SheetRange> parts;
  ForEachWithin(range, [&](const SheetRange& part) {
    parts.push_back(part);
    return true;
  });
  return parts;
}

}  // namespace zavcalc
