#pragma once
// Finds the formula in a cell by ranges; fast even if most cells hold none.

#include <algorithm>
#include <cstdint>
#include <vector>

#include "host/workbook/value.h"

namespace zavhost {

/// Numbered formulas and the cells that each of them fills. A formula can be struck; it is then no
/// longer found.
class FormulaIndex {
 public:
  void Add(std::uint32_t formula, std::uint32_t sheet, const CellRange& range);
  /// Call this once after adding all formulas. Returns the formulas that fill a cell of another
  /// formula; they are not in the index.
  std::vector<std::uint32_t> Finish();
  void Strike(std::uint32_t formula, std::uint32_t sheet, const CellRange& range);
  void Clear() { sheets_.clear(); }

  /// Calls visit(formula) for the formulas that fill a cell of the range, column by column
  /// downwards, until it returns false. A formula that fills several columns is visited once for
  /// each.
  template <class Visit>
  void VisitRange(std::uint32_t sheet, const CellRange& range, Visit visit) const {
    if (sheet >= sheets_.size()) return;
    const std::vector<Column>& columns = sheets_[sheet];
    auto column =
        std::lower_bound(columns.begin(), columns.end(), range.first_column,
                         [](const Column& c, std::int32_t index) { return c.index < index; });
    for (; column != columns.end() && column->index <= range.last_column; ++column) {
      if (column->left == 0) continue;
      auto run = std::lower_bound(column->runs.begin(), column->runs.end(), range.first_row,
                                  [](const Run& r, std::int32_t row) { return r.last_row < row; });
      for (; run != column->runs.end() && run->first_row <= range.last_row; ++run) {
        if (!run->struck && !visit(run->formula)) return;
      }
    }
  }

 private:
  struct Run {
    std::int32_t first_row;
    std::int32_t last_row;
    std::uint32_t formula;
    bool struck = false;
  };
  struct Column {
    std::int32_t index;
    std::vector<Run> runs;  // by row, disjoint
    std::size_t left = 0;   // not struck
  };

  Column& ColumnFor(std::uint32_t sheet, std::int32_t index);

  std::vector<std::vector<Column>> sheets_;
};

}  // namespace zavhost
