#pragma once
// Reads the cells of one argument from the host.

#include <cstddef>
#include <span>

#include "data/argument_piece.h"

namespace zavrel {

/// Takes an argument's cells in order. False: these and all further ones are not wanted.
class CellSink {
 public:
  virtual bool Cells(std::span<const XLOPER12> cells) = 0;
  virtual bool Blanks(std::size_t count) = 0;

 protected:
  ~CellSink() = default;
};

enum class ReadOutcome {
  kRead,
  kUnreadable,    // no cells behind the argument, not given by the host, or not wanted
  kUncalculated,  // the host has still to calculate a cell, or wants the call to end
};

/// Hands the piece's cells to the sink: the areas of a reference as given, each row by row, read
/// in blocks; the elements of an array; a single value as one cell. What the sink throws passes
/// through.
///
/// An area that names whole columns or whole rows counts as its used part: what follows its last
/// used row (its last used column) is left out. Every other area has all its cells, blank ones too.
ReadOutcome ReadCells(const ArgumentPiece& piece, CellSink& sink);

/// How many cells a piece has, whole columns and rows not counted: what is worth reserving.
std::size_t ExpectedCells(const ArgumentPiece& piece);
/// How many cells a piece has, with all those of whole columns and rows.
std::size_t AllCells(const ArgumentPiece& piece);

}  // namespace zavrel
