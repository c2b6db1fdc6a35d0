#include "data/cell_layout.h"

#include <doctest/doctest.h>

#include <string>
#include <vector>

#include "data/whole_area.h"
#include "support/records.h"

namespace zavrel::tests {
namespace {

using Kind = CellLayout::Kind;

CellLayout LayoutOf(const XLOPER12* argument) {
  const ArgumentPiece piece = ArgumentPiece::Of(argument);
  return zavrel::LayoutOf(Pieces{&piece, 1});
}
CellLayout LayoutOf(const XLREF12& area) { return LayoutOf(Reference(area)); }

/// A layout with the number of cells that were read of it.
struct Read {
  CellLayout layout;
  std::size_t cells;
};

using Test = bool (*)(const CellLayout&, std::size_t, const CellLayout&, std::size_t);

/// The same whichever of the two comes first.
bool Holds(Test test, const Read& a, const Read& b) {
  const bool holds = test(a.layout, a.cells, b.layout, b.cells);
  CHECK(test(b.layout, b.cells, a.layout, a.cells) == holds);
  return holds;
}

std::string Block(const Read& read) {
  const auto block = BlockOf(read.layout, read.cells);
  return block ? std::to_string(block->rows) + "x" + std::to_string(block->columns) : "none";
}

const CellLayout kColumn = LayoutOf(WholeColumns(0, 0));
const CellLayout kTwoColumns = LayoutOf(WholeColumns(0, 1));
const CellLayout kRow = LayoutOf(WholeRows(0, 0));
const CellLayout kTwoRows = LayoutOf(WholeRows(0, 1));
const CellLayout kThreeRows = LayoutOf(WholeRows(0, 2));
const CellLayout kSheet = LayoutOf(WholeColumns(0, kExcelColumns - 1));
const CellLayout kSeveral = LayoutOf(Reference(1, {WholeColumns(0, 0), WholeColumns(2, 2)}));
const CellLayout kTall = LayoutOf(Area(0, 5, 0, 0));
const CellLayout kBlock = LayoutOf(Area(0, 2, 0, 1));
const CellLayout kWide = LayoutOf(Area(0, 1, 0, 2));

}  // namespace

TEST_CASE("the cells that were read form a block, if they were given as one") {
  CHECK(Block({kBlock, 6}) == "3x2");
  CHECK(Block({LayoutOf(Argument(2, 3)), 6}) == "2x3");
  CHECK(Block({LayoutOf(Argument(Cell(1.0))), 1}) == "1x1");
  CHECK(Block({kTwoColumns, 8}) == "4x2");
  CHECK(Block({kRow, 5}) == "1x5");
  CHECK(Block({kTwoRows, 8}) == "2x4");
  for (const CellLayout& layout : {kSheet, kSeveral}) CHECK(Block({layout, 8}) == "none");
  CHECK(Block({LayoutOf(Reference(1, {Area(0, 0, 0, 0), Area(2, 2, 0, 0)})), 2}) == "none");
}

TEST_CASE("cells pair one by one, with blank ones behind the used part of whole columns") {
  const auto pair = [](const Read& a, const Read& b) { return Holds(CanPair, a, b); };
  // What has all its cells pairs by their number, whatever the shape.
  CHECK(pair({kBlock, 6}, {kTall, 6}));
  CHECK_FALSE(pair({kBlock, 6}, {LayoutOf(Area(0, 4, 0, 0)), 5}));
  // A single column or row goes on cell by cell.
  CHECK(pair({kColumn, 4}, {kColumn, 7}));
  CHECK(pair({kColumn, 4}, {kRow, 7}));
  CHECK(pair({kColumn, 4}, {kTall, 6}));
  CHECK(pair({kRow, 6}, {kBlock, 6}));
  CHECK_FALSE(pair({kColumn, 7}, {kTall, 6}));
  // Several go on row by row.
  CHECK(pair({kTwoColumns, 4}, {kTwoColumns, 8}));
  CHECK(pair({kTwoColumns, 4}, {kBlock, 6}));
  CHECK_FALSE(pair({kTwoColumns, 8}, {kBlock, 6}));
  CHECK_FALSE(pair({kTwoColumns, 4}, {kTall, 6}));
  CHECK_FALSE(pair({kTwoColumns, 4}, {kColumn, 4}));
  // Several rows pair only with as many that end at the same column.
  CHECK(pair({kTwoRows, 6}, {kTwoRows, 6}));
  CHECK_FALSE(pair({kTwoRows, 6}, {kTwoRows, 8}));
  CHECK_FALSE(pair({kTwoRows, 6}, {kThreeRows, 6}));
  CHECK_FALSE(pair({kTwoRows, 6}, {kWide, 6}));
  // And what is cut within with nothing.
  for (const CellLayout& cut : {kSheet, kSeveral}) CHECK_FALSE(pair({cut, 6}, {cut, 6}));
}

TEST_CASE("as many cells as the shorter has pair whatever their columns, unless cut within") {
  const auto pair = [](const Read& a, const Read& b) { return Holds(CanPairShorter, a, b); };
  CHECK(pair({kTwoColumns, 4}, {kColumn, 7}));
  CHECK(pair({kBlock, 6}, {kColumn, 7}));
  CHECK_FALSE(pair({kTwoRows, 6}, {kTwoRows, 8}));
  CHECK_FALSE(pair({kSeveral, 6}, {kTall, 6}));
}

TEST_CASE("the same shape is the same rows and columns as given, not as used") {
  const auto same = [](const Read& a, const Read& b) { return Holds(HaveSameShape, a, b); };
  CHECK(same({kColumn, 4}, {kColumn, 7}));
  CHECK(same({kBlock, 6}, {LayoutOf(Argument(3, 2)), 6}));
  CHECK(same({kTwoRows, 6}, {kTwoRows, 6}));
  CHECK_FALSE(same({kBlock, 6}, {kWide, 6}));
  CHECK_FALSE(same({LayoutOf(Area(0, 2, 0, 0)), 3}, {kBlock, 6}));
  CHECK_FALSE(same({kColumn, 4}, {kRow, 4}));
  CHECK_FALSE(same({kColumn, 4}, {kTwoColumns, 4}));
  CHECK_FALSE(same({kColumn, 6}, {kTall, 6}));
  CHECK_FALSE(same({kTwoRows, 6}, {kTwoRows, 8}));
  CHECK_FALSE(same({kSheet, 6}, {kSheet, 6}));
  // Several areas have no shape, but a number of cells.
  const CellLayout areas = LayoutOf(Reference(1, {Area(0, 1, 0, 0), Area(4, 4, 0, 0)}));
  CHECK(same({areas, 3}, {areas, 3}));
  CHECK_FALSE(same({areas, 3}, {areas, 4}));
}

}  // namespace zavrel::tests
