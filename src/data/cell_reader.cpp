#include "data/cell_reader.h"

#include <algorithm>

#include "data/used_part.h"
#include "data/whole_area.h"
#include "excel/coerce.h"
#include "excel/xxloper.h"

namespace zavrel {
namespace {

// Cells requested in one call: few enough to be consumed while they are still in the processor's
// cache, enough that the cost of the calls does not matter.
constexpr std::int64_t kBlockCells = 1 << 15;

/// What a cell can hold.
constexpr std::uint32_t kCellTypes =
    xltypeNum | xltypeStr | xltypeBool | xltypeErr | xltypeNil | xltypeInt | xltypeMissing;

std::int64_t CellCount(const XLREF12& area) { return std::int64_t{RowsOf(area)} * ColumnsOf(area); }

std::size_t Size(std::int64_t count) { return static_cast<std::size_t>(count); }

class AreaReader {
 public:
  AreaReader(const ReferenceView& reference, const XLREF12& area, CellSink& sink)
      : reference_(reference), area_(area), sink_(sink) {}

  ReadOutcome Read() {
    if (IsWhole(area_)) {
      const ReadOutcome outcome = CutToUsedPart(reference_, area_);
      if (outcome != ReadOutcome::kRead) return outcome;
      if (!sink_.Expect(Size(CellCount(area_)))) return ReadOutcome::kUnreadable;
    }
    // At least one row, of up to 16,384 cells.
    const std::int64_t block_rows = std::max<std::int64_t>(1, kBlockCells / ColumnsOf(area_));
    for (std::int64_t row = area_.rwFirst; row <= area_.rwLast; row += block_rows) {
      XLREF12 part = area_;
      part.rwFirst = static_cast<std::int32_t>(row);
      part.rwLast =
          static_cast<std::int32_t>(std::min<std::int64_t>(area_.rwLast, row + block_rows - 1));
      const ReadOutcome outcome = ReadBlock(part);
      if (outcome != ReadOutcome::kRead) return outcome;
    }
    return ReadOutcome::kRead;
  }

 private:
  ReadOutcome ReadBlock(const XLREF12& part) {
    const OneArea one(reference_, part);
    const ExcelResult read = LookUp(XXloper::FromArgument(&one.record()));
    if (WantsReturn(read)) return ReadOutcome::kUncalculated;
    if (!read.ok() || !Answers(read.value, part)) return ReadOutcome::kUnreadable;
    const XLOPER12& value = read.value.record();
    const auto cells = read.value.Is(xltypeMulti) ? read.value.elements() : std::span(&value, 1);
    return !cells.empty() && sink_.Cells(cells) ? ReadOutcome::kRead : ReadOutcome::kUnreadable;
  }

  static bool Answers(const XXloper& value, const XLREF12& part) {
    if (!value.Is(xltypeMulti)) return CellCount(part) == 1 && value.Is(kCellTypes);
    const auto& array = value.record().val.array;
    return array.rows == RowsOf(part) && array.columns == ColumnsOf(part);
  }

  const ReferenceView& reference_;
  XLREF12 area_;
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
