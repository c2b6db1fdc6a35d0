#include "data/cell_layout.h"

#include <algorithm>
#include <utility>

#include "data/whole_area.h"
#include "excel/reference.h"

namespace zavrel {
namespace {

using Kind = CellLayout::Kind;

bool HasWholeArea(const XLOPER12* piece) {
  const auto reference = ReferenceView::Of(*piece);
  return reference && std::any_of(reference->areas().begin(), reference->areas().end(), IsWhole);
}

}  // namespace

CellLayout LayoutOf(std::span<const XLOPER12* const> pieces) {
  const bool any_whole = std::any_of(pieces.begin(), pieces.end(), HasWholeArea);
  const CellLayout several{any_whole ? Kind::kClipped : Kind::kComplete};
  if (pieces.size() != 1) return several;
  const auto reference = ReferenceView::Of(*pieces.front());
  if (!reference || reference->areas().size() != 1) return several;

  const XLREF12& area = reference->areas().front();
  const auto columns = static_cast<std::size_t>(ColumnsOf(area));
  const auto rows = static_cast<std::size_t>(RowsOf(area));
  if (!IsWhole(area)) return {Kind::kComplete, columns};
  if (!IsWholeRows(area)) return {Kind::kOpenEnd, columns};
  if (IsWholeColumns(area)) return {Kind::kClipped};
  // One row goes on cell by cell, as one column does.
  return rows == 1 ? CellLayout{Kind::kOpenEnd, 1} : CellLayout{Kind::kWholeRows, rows};
}

bool CanPairShorter(const CellLayout& a, std::size_t a_cells, const CellLayout& b,
                    std::size_t b_cells) {
  if (a.kind == Kind::kClipped || b.kind == Kind::kClipped) return false;
  if (a.kind == Kind::kWholeRows || b.kind == Kind::kWholeRows)
    return a.kind == b.kind && a.width == b.width && a_cells == b_cells;
  return true;
}

bool CanPair(const CellLayout& a, std::size_t a_cells, const CellLayout& b, std::size_t b_cells) {
  if (!CanPairShorter(a, a_cells, b, b_cells)) return false;
  if (a.kind == b.kind) return a.kind == Kind::kComplete ? a_cells == b_cells : a.width == b.width;
  const bool a_is_open = a.kind == Kind::kOpenEnd;
  const auto [open, complete] = a_is_open ? std::pair(a, b) : std::pair(b, a);
  const bool fits = open.width == 1 || open.width == complete.width;
  return fits && (a_is_open ? a_cells <= b_cells : b_cells <= a_cells);
}

}  // namespace zavrel
