#include "data/cell_reader.h"

#include <algorithm>

#include "data/cell_columns.h"
#include "data/whole_area.h"
#include "excel/coerce.h"
#include "excel/xxloper.h"

namespace zavrel {
namespace {

// Cells requested in one call: few enough to be consumed while they are still in the processor's
// cache, enough that the cost of the calls does not matter.
constexpr std::int64_t kBlockCells = 1 << 15;
// Whole columns and rows with more cells than 64 columns have are requested in larger blocks, of
// 32 MB: even the 16,384 blocks of a whole sheet cost a host little that knows the used part
// itself. One that does not fills each of them.
constexpr std::int64_t kManyCells = std::int64_t{1} << 26;
constexpr std::int64_t kLargeBlockCells = 1 << 20;

/// What a cell can hold.
constexpr std::uint32_t kCellTypes =
    xltypeNum | xltypeStr | xltypeBool | xltypeErr | xltypeNil | xltypeInt | xltypeMissing;

std::int64_t CellCount(const XLREF12& area) { return std::int64_t{RowsOf(area)} * ColumnsOf(area); }

std::size_t Size(std::int64_t count) { return static_cast<std::size_t>(count); }

/// The values of an area as the host gave them. Of whole columns and rows a host that knows its
/// sheet's used part may give fewer rows and columns than were requested: the missing ones are
/// blank.
struct Block {
  XXloper value;
  std::span<const XLOPER12> cells;
  std::int64_t rows = 0;
  std::int64_t columns = 0;

  std::span<const XLOPER12> Row(std::int64_t row) const {
    return cells.subspan(Size(row * columns), Size(columns));
  }
};

class AreaReader {
 public:
  AreaReader(const ReferenceView& reference, const XLREF12& area, CellSink& sink)
      : reference_(reference), area_(area), may_be_clipped_(IsWhole(area)), sink_(sink) {}

  ReadOutcome Read() {
    if (IsWholeRows(area_)) return ReadWholeRows();
    return IsWholeColumns(area_) ? ReadWholeColumns() : ReadAll();
  }

 private:
  /// Rows per block; at least one, of up to 16,384 cells.
  std::int64_t BlockRows() const {
    const std::int64_t cells = CellCount(area_) > kManyCells ? kLargeBlockCells : kBlockCells;
    return std::max<std::int64_t>(1, cells / ColumnsOf(area_));
  }

  ReadOutcome ReadBlock(const XLREF12& part, Block& block) const {
    const OneArea one(reference_, part);
    ExcelResult read = LookUp(XXloper::FromArgument(&one.record()));
    if (WantsReturn(read)) return ReadOutcome::kUncalculated;
    if (!read.ok()) return ReadOutcome::kUnreadable;

    block.value = std::move(read.value);
    if (!block.value.Is(xltypeMulti)) {
      block.cells = {&block.value.record(), 1};
      block.rows = block.columns = 1;
      const bool answers = CellCount(part) == 1 && block.value.Is(kCellTypes);
      return answers ? ReadOutcome::kRead : ReadOutcome::kUnreadable;
    }
    block.cells = block.value.elements();
    block.rows = block.value.record().val.array.rows;
    block.columns = block.value.record().val.array.columns;
    return !block.cells.empty() && Answers(block, part) ? ReadOutcome::kRead
                                                        : ReadOutcome::kUnreadable;
  }

  bool Answers(const Block& block, const XLREF12& part) const {
    if (may_be_clipped_) return block.rows <= RowsOf(part) && block.columns <= ColumnsOf(part);
    return block.rows == RowsOf(part) && block.columns == ColumnsOf(part);
  }

  /// Calls take(block, rows requested) for each block of rows from top to bottom, while it returns
  /// true.
  template <class Take>
  ReadOutcome EachBlock(std::int64_t block_rows, Take take) const {
    for (std::int64_t row = area_.rwFirst; row <= area_.rwLast; row += block_rows) {
      XLREF12 part = area_;
      part.rwFirst = static_cast<std::int32_t>(row);
      part.rwLast =
          static_cast<std::int32_t>(std::min<std::int64_t>(area_.rwLast, row + block_rows - 1));
      Block block;
      const ReadOutcome outcome = ReadBlock(part, block);
      if (outcome != ReadOutcome::kRead) return outcome;
      if (!take(block, RowsOf(part))) return ReadOutcome::kUnreadable;
    }
    return ReadOutcome::kRead;
  }

  /// Hands the block's first rows to the sink, with the columns that a host left out.
  bool Emit(const Block& block, std::int64_t rows) {
    const std::int64_t left_out = ColumnsOf(area_) - block.columns;
    if (left_out == 0) return sink_.Cells(block.cells.first(Size(rows * block.columns)));
    for (std::int64_t row = 0; row < rows; ++row) {
      if (!sink_.Cells(block.Row(row)) || !sink_.Blanks(Size(left_out))) return false;
    }
    return true;
  }

  /// The number of rows of the block down to its last used one.
  static std::int64_t UsedRows(const Block& block) {
    auto last = block.cells.rbegin();
    while (last != block.cells.rend() && IsBlankCell(*last)) ++last;
    return (block.cells.rend() - last + block.columns - 1) / block.columns;
  }
  static std::int64_t UsedColumns(const Block& block) {
    std::int64_t used = 0;
    for (std::int64_t row = 0; row < block.rows; ++row) {
      const std::span<const XLOPER12> cells = block.Row(row);
      std::int64_t columns = block.columns;
      while (columns > used && IsBlankCell(cells[Size(columns - 1)])) --columns;
      used = std::max(used, columns);
    }
    return used;
  }

  ReadOutcome ReadAll() {
    return EachBlock(BlockRows(),
                     [&](const Block& block, std::int64_t rows) { return Emit(block, rows); });
  }

  /// Whole columns end at their last used row.
  ReadOutcome ReadWholeColumns() {
    const std::int64_t columns = ColumnsOf(area_);
    std::int64_t blank_rows = 0;  // met so far; left out unless a used row follows
    return EachBlock(BlockRows(), [&](const Block& block, std::int64_t rows) {
      const std::int64_t used = UsedRows(block);
      bool wanted = true;
      if (used > 0) {
        wanted = (blank_rows == 0 || sink_.Blanks(Size(blank_rows * columns))) && Emit(block, used);
        blank_rows = 0;
      }
      blank_rows += rows - used;
      return wanted;
    });
  }

  /// Whole rows end at their last used column, which is not known before all rows are searched; a
  /// whole sheet also ends at its last used row. Then only the used part is requested again.
  ReadOutcome ReadWholeRows() {
    std::int64_t columns = 0;
    std::int64_t rows = 0;  // down to the last used one
    std::int64_t searched = 0;
    const ReadOutcome outcome = EachBlock(BlockRows(), [&](const Block& block, std::int64_t asked) {
      columns = std::max(columns, UsedColumns(block));
      if (const std::int64_t used = UsedRows(block); used > 0) rows = searched + used;
      searched += asked;
      return true;
    });
    if (outcome != ReadOutcome::kRead || columns == 0) return outcome;
    const std::int64_t unused_rows = IsWholeColumns(area_) ? 0 : RowsOf(area_) - rows;
    area_.rwLast = static_cast<std::int32_t>(area_.rwFirst + rows - 1);
    area_.colLast = static_cast<std::int32_t>(columns - 1);
    may_be_clipped_ = false;
    const ReadOutcome read = ReadAll();
    if (read != ReadOutcome::kRead || unused_rows == 0) return read;
    return sink_.Blanks(Size(unused_rows * columns)) ? read : ReadOutcome::kUnreadable;
  }

  const ReferenceView& reference_;
  XLREF12 area_;
  bool may_be_clipped_;
  CellSink& sink_;
};

}  // namespace

std::size_t ExpectedCells(const ArgumentPiece& piece) {
  std::size_t cells = piece.values().size();
  for (const XLREF12& area : piece.areas()) {
    if (!IsWhole(area)) cells += Size(CellCount(area));
  }
  return cells;
}

bool IsOneCell(const ArgumentPiece& piece) {
  const bool is_one_area = piece.areas().size() == 1;
  return is_one_area ? CellCount(piece.areas().front()) == 1 : piece.values().size() == 1;
}

ReadOutcome ReadCells(const ArgumentPiece& piece, CellSink& sink) {
  for (const XLREF12& area : piece.areas()) {
    const ReadOutcome outcome = AreaReader(*piece.reference, area, sink).Read();
    if (outcome != ReadOutcome::kRead) return outcome;
  }
  if (piece.reference) return ReadOutcome::kRead;
  const std::uint32_t type = TypeOf(*piece.record);
  const bool leads_nowhere = type == xltypeRef || type == xltypeSRef;
  if (leads_nowhere || piece.values().empty()) return ReadOutcome::kUnreadable;
  return sink.Cells(piece.values()) ? ReadOutcome::kRead : ReadOutcome::kUnreadable;
}

}  // namespace zavrel
