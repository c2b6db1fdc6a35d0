#pragma once
// How the cells of a data set lie, as far as pairing them one by one with another's depends on it.

#include <cstddef>
#include <span>

#include "excel/xloper12.h"

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
  /// Of complete data its columns, 0 where it has none to speak of (several areas, arrays, values);
  /// at an open end the columns of each row that may follow; of whole rows their number.
  std::size_t width = 0;
};

/// The layout of the data set that the pieces form; none of them is null.
CellLayout LayoutOf(std::span<const XLOPER12* const> pieces);

/// True when the n-th cell of the one belongs to the n-th of the other, for as many cells as the
/// two are read to have and blank ones after these at an open end.
bool CanPair(const CellLayout& a, std::size_t a_cells, const CellLayout& b, std::size_t b_cells);

/// The same for as many cells as the shorter of the two has, so that it does not matter how many
/// columns are cut at an open end.
bool CanPairShorter(const CellLayout& a, std::size_t a_cells, const CellLayout& b,
                    std::size_t b_cells);

}  // namespace zavrel
