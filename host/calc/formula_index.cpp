#include "host/calc/formula_index.h"

namespace zavhost {

FormulaIndex::Column& FormulaIndex::ColumnFor(std::uint32_t sheet, std::int32_t index) {
  if (sheet >= sheets_.size()) sheets_.resize(sheet + 1);
  std::vector<Column>& columns = sheets_[sheet];
  auto column = std::lower_bound(columns.begin(), columns.end(), index,
                                 [](const Column& c, std::int32_t i) { return c.index < i; });
  if (column == columns.end() || column->index != index)
    column = columns.insert(column, Column{.index = index, .runs = {}});
  return *column;
}

void FormulaIndex::Add(std::uint32_t formula, std::uint32_t sheet, const CellRange& range) {
  for (std::int32_t column = range.first_column; column <= range.last_column; ++column)
    ColumnFor(sheet, column).runs.push_back({range.first_row, range.last_row, formula});
}

std::vector<std::uint32_t> FormulaIndex::Finish() {
  const auto by_row = [](const Run& a, const Run& b) {
    return a.first_row != b.first_row ? a.first_row < b.first_row : a.formula < b.formula;
  };
  std::vector<std::uint32_t> overlapping;
  for (std::vector<Column>& columns : sheets_) {
    for (Column& column : columns) {
      std::sort(column.runs.begin(), column.runs.end(), by_row);
      std::int32_t end = -1;
      for (const Run& run : column.runs) {
        if (run.first_row <= end) overlapping.push_back(run.formula);
        end = std::max(end, run.last_row);
      }
    }
  }
  std::sort(overlapping.begin(), overlapping.end());
  overlapping.erase(std::unique(overlapping.begin(), overlapping.end()), overlapping.end());
  for (std::vector<Column>& columns : sheets_) {
    for (Column& column : columns) {
      if (!overlapping.empty()) {
        std::erase_if(column.runs, [&](const Run& run) {
          return std::binary_search(overlapping.begin(), overlapping.end(), run.formula);
        });
      }
      column.open = column.runs.size();
    }
  }
  return overlapping;
}

void FormulaIndex::Mark(std::uint32_t formula, std::uint32_t sheet, const CellRange& range,
                        FormulaMarks marks) {
  const auto is_open = [](FormulaMarks m) { return (m & kOpen) != 0; };
  const auto is_noted = [](FormulaMarks m) { return (m & (kDoubtful | kVolatile)) != 0; };
  for (std::int32_t index = range.first_column; index <= range.last_column; ++index) {
    Column& column = ColumnFor(sheet, index);
    const auto run =
        std::lower_bound(column.runs.begin(), column.runs.end(), range.first_row,
                         [](const Run& r, std::int32_t row) { return r.last_row < row; });
    if (run == column.runs.end() || run->formula != formula) continue;
    if (is_open(run->marks)) --column.open;
    if (is_noted(run->marks)) --column.noted;
    run->marks = marks;
    if (is_open(marks)) ++column.open;
    if (is_noted(marks)) ++column.noted;
    const std::vector<Run>& runs = column.runs;
    std::size_t& first = column.first_open;
    while (first < runs.size() && !is_open(runs[first].marks)) ++first;
  }
}

}  // namespace zavhost
