#pragma once
// How the cells of a data set lie: which block they form, and with whose they can be paired.

#include <cstddef>
#include <optional>

#include "data/argument_piece.h"

namespace zavrel {

/// Whole columns and rows are cut down to their used part, each area on its own. Only where that
/// takes cells off the end alone can the cells be paired with those of another data set whose used
/// part is longer or shorter.
struct CellLayout {
  enum class Kind {
    kComplete,   // has all its cells
    kOpenEnd,    // cut at the end: any number of blank cells may be thought to follow
    kWholeRows,  // several rows, each cut at the same column
    kClipped,    // cut elsewhere too: several areas, a whole sheet
  };
  Kind kind = Kind::kComplete;
  /// Of the argument as it was given, used or not; 0 where it is no block of cells: several areas,
  /// several arguments, a whole sheet.
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
/// That of `cells` cells; nothing for what is no block.
std::optional<CellBlock> BlockOf(const CellLayout& layout, std::size_t cells);

/// True when the n-th cell of the one belongs to the n-th of the other, for as many cells as the
/// two are read to have and blank ones after these at an open end.
bool CanPair(const CellLayout& a, std::size_t a_cells, const CellLayout& b, std::size_t b_cells);

/// The same for as many cells as the shorter of the two has, so that it does not matter how many
/// columns are cut at an open end.
bool CanPairShorter(const CellLayout& a, std::size_t a_cells, const CellLayout& b,
                    std::size_t b_cells);

}  // namespace zavrel
