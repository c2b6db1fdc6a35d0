#pragma once
// The layout of a data set's cells: which block they form, and which other cells they can be paired
// with.

#include <cstddef>
#include <optional>

#include "data/argument_piece.h"

namespace zavrel {

/// Each area of whole columns or rows is cut down to its used part. If that removes cells from the
/// end alone, and only then, the cells can be paired with those of a data set whose used part is
/// longer or shorter.
struct CellLayout {
  enum class Kind {
    kComplete,   // has all its cells
    kOpenEnd,    // cut at the end: any number of blank cells may follow
    kWholeRows,  // several whole rows, all cut at the same column
    kClipped,    // cut elsewhere too: several areas, a whole sheet
  };
  Kind kind = Kind::kComplete;
  /// Size of the argument as given, used or not; 0 if it is not one block of cells (several areas,
  /// several arguments, a whole sheet).
  std::size_t rows = 0;
  std::size_t columns = 0;

  bool is_one_row() const { return rows == 1; }
};

/// The layout of the data set that the pieces form.
CellLayout LayoutOf(Pieces pieces);

/// The block that the cells of a data set form, row by row.
struct CellBlock {
  std::size_t rows = 0;
  std::size_t columns = 0;
};
/// The block that `cells` cells of this layout form; std::nullopt if they do not form one.
std::optional<CellBlock> BlockOf(const CellLayout& layout, std::size_t cells);

/// True when the n-th cell of one data set belongs to the n-th cell of the other, for all the cells
/// that were read and for the blank ones that may follow at an open end.
bool CanPair(const CellLayout& a, std::size_t a_cells, const CellLayout& b, std::size_t b_cells);

/// The same for only as many cells as the shorter data set has, so the number of columns at an open
/// end does not matter.
bool CanPairShorter(const CellLayout& a, std::size_t a_cells, const CellLayout& b,
                    std::size_t b_cells);

/// True when the two were given as many rows and as many columns, so that every cell of the one
/// belongs to one of the other. Of whole columns the used parts may differ.
bool HaveSameShape(const CellLayout& a, std::size_t a_cells, const CellLayout& b,
                   std::size_t b_cells);

}  // namespace zavrel
