#pragma once
// Reads the cells of one argument from the host.

#include <cstddef>
#include <span>

#include "data/argument_piece.h"

namespace zavrel {

/// Takes an argument's cells in order. False refuses these cells and all further ones.
class CellSink {
 public:
  /// So many cells of whole columns or rows come next, which ExpectedCells could not know.
  virtual bool Expect(std::size_t cells) = 0;
  virtual bool Cells(std::span<const XLOPER12> cells) = 0;

 protected:
  ~CellSink() = default;
};

enum class ReadOutcome {
  kRead,
  kUnreadable,    // the argument leads to no cells, or the host or the sink refused them
  kUncalculated,  // the host still has to calculate a cell, or wants the call to end
};

/// Hands the piece's cells to the sink: the areas of a reference in the order given, each row by
/// row, read in blocks; the elements of an array; a single value as one cell. Exceptions of the
/// sink pass through.
///
/// An area of whole columns or whole rows counts as its used part: the cells after its last used
/// row (or column) are left out. Every other area keeps all its cells, blank ones too.
ReadOutcome ReadCells(const ArgumentPiece& piece, CellSink& sink);

/// The number of cells in a piece without its whole columns and rows: the room worth reserving.
std::size_t ExpectedCells(const ArgumentPiece& piece);
bool IsOneCell(const ArgumentPiece& piece);

}  // namespace zavrel
