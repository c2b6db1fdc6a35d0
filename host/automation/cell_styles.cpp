#include "host/automation/cell_styles.h"

namespace zavhost {

const CellStyle& CellStyles::At(std::int32_t row, std::int32_t column) const {
  if (const auto cell = cells_.find({row, column}); cell != cells_.end()) return cell->second;
  if (const auto found = rows_.find(row); found != rows_.end()) return found->second;
  if (const auto found = columns_.find(column); found != columns_.end()) return found->second;
  return sheet_;
}

const CellStyle* CellStyles::OfColumn(std::int32_t column) const {
  const auto found = columns_.find(column);
  return found == columns_.end() ? nullptr : &found->second;
}

void CellStyles::Apply(const CellRange& range, const Change& change) {
  if (range.HasAllRows()) return ApplyToColumns(range, change);
  if (range.HasAllColumns()) return ApplyToRows(range, change);
  for (std::int32_t row = range.first_row; row <= range.last_row; ++row) {
    for (std::int32_t column = range.first_column; column <= range.last_column; ++column)
      change(cells_.try_emplace({row, column}, At(row, column)).first->second);
  }
}

void CellStyles::ApplyToColumns(const CellRange& range, const Change& change) {
  const bool is_whole = range.HasAllColumns();
  // Where a row has a style, its cells in these columns get their own.
  for (auto& [row, style] : rows_) {
    if (is_whole) {
      change(style);
      continue;
    }
    for (std::int32_t column = range.first_column; column <= range.last_column; ++column)
      cells_.try_emplace({row, column}, style);
  }
  for (auto& [cell, style] : cells_) {
    if (range.Contains(cell.row, cell.column)) change(style);
  }
  if (is_whole) {
    for (auto& [column, style] : columns_) change(style);
    change(sheet_);
    return;
  }
  for (std::int32_t column = range.first_column; column <= range.last_column; ++column)
    change(columns_.try_emplace(column, sheet_).first->second);
}

void CellStyles::ApplyToRows(const CellRange& range, const Change& change) {
  for (auto& [cell, style] : cells_) {
    if (range.Contains(cell.row, cell.column)) change(style);
  }
  for (std::int32_t row = range.first_row; row <= range.last_row; ++row) {
    if (!rows_.contains(row)) {
      for (const auto& [column, style] : columns_) {
        if (const auto [cell, is_new] = cells_.try_emplace({row, column}, style); is_new)
          change(cell->second);
      }
    }
    change(rows_.try_emplace(row, sheet_).first->second);
  }
}

void CellStyles::ForEach(const CellRange& range, const Visit& visit) const {
  constexpr std::int64_t kMostCells = 1 << 16;
  if (std::int64_t{range.rows()} * range.columns() <= kMostCells) {
    for (std::int32_t row = range.first_row; row <= range.last_row; ++row) {
      for (std::int32_t column = range.first_column; column <= range.last_column; ++column)
        visit(At(row, column));
    }
    return;
  }
  // So many cells are not all covered by styles of their own.
  std::int32_t styled_columns = 0;
  for (const auto& [column, style] : columns_) {
    if (column < range.first_column || column > range.last_column) continue;
    ++styled_columns;
    visit(style);
  }
  for (const auto& [row, style] : rows_) {
    if (row < range.first_row || row > range.last_row) continue;
    std::int32_t column = range.first_column;
    while (column <= range.last_column && cells_.contains({row, column})) ++column;
    if (column <= range.last_column) visit(style);
  }
  for (const auto& [cell, style] : cells_) {
    if (range.Contains(cell.row, cell.column)) visit(style);
  }
  if (styled_columns < range.columns()) visit(sheet_);
}

}  // namespace zavhost
