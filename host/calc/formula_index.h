#pragma once
// Finds the formulas in a range of cells; fast even if most cells hold none.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "host/workbook/value.h"

namespace zavhost {

/// What is known of a formula during a recalculation; several may hold.
using FormulaMarks = std::uint8_t;
inline constexpr FormulaMarks kOpen = 1;      // not calculated yet
inline constexpr FormulaMarks kChanged = 2;   // its value is not the stored one
inline constexpr FormulaMarks kDoubtful = 4;  // its value may be wrong
inline constexpr FormulaMarks kVolatile = 8;  // its value depends on the time or on chance
inline constexpr FormulaMarks kAnyMarks = 0xFF;

/// Numbered formulas, the cells that each of them fills, and their marks. They begin as kOpen.
class FormulaIndex {
 public:
  void Add(std::uint32_t formula, std::uint32_t sheet, const CellRange& range);
  /// Call this once after adding all formulas. Returns the formulas that fill a cell of another
  /// formula; they are not in the index.
  std::vector<std::uint32_t> Finish();
  /// Replaces the marks of a formula.
  void Mark(std::uint32_t formula, std::uint32_t sheet, const CellRange& range, FormulaMarks marks);
  void Clear() { sheets_.clear(); }

  /// Calls visit(formula, marks) for the formulas that fill a cell of the range and have one of the
  /// wanted marks (all formulas for kAnyMarks), column by column downwards, until it returns false.
  /// A formula that fills several columns is visited once for each.
  template <class Visit>
  void VisitRange(std::uint32_t sheet, const CellRange& range, FormulaMarks wanted,
                  Visit visit) const {
    if (sheet >= sheets_.size()) return;
    const std::vector<Column>& columns = sheets_[sheet];
    auto column =
        std::lower_bound(columns.begin(), columns.end(), range.first_column,
                         [](const Column& c, std::int32_t index) { return c.index < index; });
    for (; column != columns.end() && column->index <= range.last_column; ++column) {
      if (!MayHave(*column, wanted)) continue;
      const auto first = column->runs.begin() +
                         static_cast<std::ptrdiff_t>(wanted == kOpen ? column->first_open : 0);
      auto run = std::lower_bound(first, column->runs.end(), range.first_row,
                                  [](const Run& r, std::int32_t row) { return r.last_row < row; });
      for (; run != column->runs.end() && run->first_row <= range.last_row; ++run) {
        const bool is_wanted = wanted == kAnyMarks || (run->marks & wanted) != 0;
        if (is_wanted && !visit(run->formula, run->marks)) return;
      }
    }
  }

 private:
  struct Run {
    std::int32_t first_row;
    std::int32_t last_row;
    std::uint32_t formula;
    FormulaMarks marks = kOpen;
  };
  struct Column {
    std::int32_t index;
    std::vector<Run> runs;       // by row, disjoint
    std::size_t open = 0;        // runs with this mark
    std::size_t first_open = 0;  // no run before it has the mark
    std::size_t noted = 0;       // runs that are doubtful or volatile
  };

  static bool MayHave(const Column& column, FormulaMarks wanted) {
    if (wanted == kOpen) return column.open > 0;
    return (wanted & (kOpen | kChanged)) != 0 || column.noted > 0;
  }
  Column& ColumnFor(std::uint32_t sheet, std::int32_t index);

  std::vector<std::vector<Column>> sheets_;
};

}  // namespace zavhost
