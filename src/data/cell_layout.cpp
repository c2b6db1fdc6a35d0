#include "data/cell_layout.h"

#include <algorithm>
#include <utility>

#include "data/whole_area.h"

namespace zavrel {
namespace {

using Kind = CellLayout::Kind;

bool HasWholeArea(const ArgumentPiece& piece) {
  return std::any_of(piece.areas().begin(), piece.areas().end(), IsWhole);
}

CellLayout LayoutOfArea(const XLREF12& area) {
  const auto rows = static_cast<std::size_t>(RowsOf(area));
  const auto columns = static_cast<std::size_t>(ColumnsOf(area));
  if (!IsWhole(area)) return {Kind::kComplete, rows, columns};
  if (!IsWholeRows(area)) return {Kind::kOpenEnd, rows, columns};
  if (IsWholeColumns(area)) return {Kind::kClipped};
  return {rows == 1 ? Kind::kOpenEnd : Kind::kWholeRows, rows, columns};
}

/// How many columns each row has that may follow at an open end. A single row continues cell by
/// cell, as a single column does.
std::size_t OpenColumns(const CellLayout& open) { return open.is_one_row() ? 1 : open.columns; }

}  // namespace

CellLayout LayoutOf(Pieces pieces) {
  const bool any_whole = std::any_of(pieces.begin(), pieces.end(), HasWholeArea);
  const CellLayout several{any_whole ? Kind::kClipped : Kind::kComplete};
  if (pieces.size() != 1) return several;
  const ArgumentPiece& piece = pieces.front();
  if (piece.reference)
    return piece.areas().size() == 1 ? LayoutOfArea(piece.areas().front()) : several;
  if (TypeOf(*piece.record) != xltypeMulti) return {Kind::kComplete, 1, 1};
  const auto& array = piece.record->val.array;
  return {Kind::kComplete, static_cast<std::size_t>(array.rows),
          static_cast<std::size_t>(array.columns)};
}

std::optional<CellBlock> BlockOf(const CellLayout& layout, std::size_t cells) {
  if (layout.columns == 0) return std::nullopt;
  if (layout.kind == Kind::kComplete) return CellBlock{layout.rows, layout.columns};
  if (layout.kind == Kind::kWholeRows || layout.is_one_row())
    return CellBlock{layout.rows, cells / layout.rows};
  return CellBlock{cells / layout.columns, layout.columns};
}

bool CanPairShorter(const CellLayout& a, std::size_t a_cells, const CellLayout& b,
                    std::size_t b_cells) {
  if (a.kind == Kind::kClipped || b.kind == Kind::kClipped) return false;
  if (a.kind == Kind::kWholeRows || b.kind == Kind::kWholeRows)
    return a.kind == b.kind && a.rows == b.rows && a_cells == b_cells;
  return true;
}

bool HaveSameShape(const CellLayout& a, std::size_t a_cells, const CellLayout& b,
                   std::size_t b_cells) {
  if (!CanPairShorter(a, a_cells, b, b_cells)) return false;
  if (a.kind != b.kind || a.rows != b.rows || a.columns != b.columns) return false;
  return a.kind == Kind::kOpenEnd || a_cells == b_cells;
}

bool CanPair(const CellLayout& a, std::size_t a_cells, const CellLayout& b, std::size_t b_cells) {
  if (!CanPairShorter(a, a_cells, b, b_cells)) return false;
  if (a.kind == b.kind) {
    if (a.kind == Kind::kComplete) return a_cells == b_cells;
    return a.kind == Kind::kWholeRows || OpenColumns(a) == OpenColumns(b);
  }
  const bool a_is_open = a.kind == Kind::kOpenEnd;
  const auto [open, complete] = a_is_open ? std::pair(a, b) : std::pair(b, a);
  const bool fits = OpenColumns(open) == 1 || OpenColumns(open) == complete.columns;
  return fits && (a_is_open ? a_cells <= b_cells : b_cells <= a_cells);
}

}  // namespace zavrel
