#pragma once
// Reads the cells of one argument from the host.

#include <cstddef>
#include <span>

#include "excel/xloper12.h"

namespace zavrel {

/// Takes an argument's cells in order.
class CellSink {
 public:
  virtual void Cells(std::span<const XLOPER12> cells) = 0;
  virtual void Blanks(std::size_t count) = 0;

 protected:
  ~CellSink() = default;
};

enum class ReadOutcome {
  kRead,
  kUnreadable,    // no cells behind the argument, or the host does not give them
  kUncalculated,  // the host has still to calculate a cell, or wants the call to end
};

/// Hands the argument's cells to the sink: the areas of a reference as given, each row by row, read
/// in blocks; the elements of an array; a single value as one cell. What the sink throws passes
/// through.
///
/// An area that names whole columns or whole rows counts as its used part: what follows its last
/// used row (its last used column) is left out. Every other area has all its cells, blank ones too.
ReadOutcome ReadCells(const XLOPER12& argument, CellSink& sink);

/// How many cells an argument has, whole columns and rows not counted: what is worth reserving.
std::size_t ExpectedCells(const XLOPER12& argument);

/// True when the argument's last area is one of whole columns or rows.
bool HasOpenEnd(const XLOPER12& argument);

}  // namespace zavrel
