#include "host/workbook/workbook.h"

#include <algorithm>

#include "host/workbook/text.h"

namespace zavhost {
namespace {

const Value kBlankValue;
const Sheet::Column kNoColumn;

bool RowBefore(const Sheet::Entry& entry, std::int32_t row) { return entry.row < row; }

}  // namespace

const Sheet::NumberedColumn* Sheet::FindColumn(std::int32_t index) const {
  // Most sheets fill their columns from A on without gaps.
  const auto place = static_cast<std::size_t>(index);
  if (place < columns_.size() && columns_[place].index == index) return &columns_[place];
  const auto found = std::lower_bound(
      columns_.begin(), columns_.end(), index,
      [](const NumberedColumn& column, std::int32_t wanted) { return column.index < wanted; });
  return found != columns_.end() && found->index == index ? &*found : nullptr;
}

Sheet::NumberedColumn& Sheet::ColumnFor(std::int32_t index) {
  if (const NumberedColumn* found = FindColumn(index)) return const_cast<NumberedColumn&>(*found);
  const auto place = std::find_if(columns_.begin(), columns_.end(),
                                  [index](const auto& column) { return column.index > index; });
  return *columns_.insert(place, NumberedColumn{index, {}});
}

const Sheet::Column& Sheet::column(std::int32_t index) const {
  const NumberedColumn* found = FindColumn(index);
  return found == nullptr ? kNoColumn : found->cells;
}

std::uint64_t Sheet::changes(std::int32_t first_column, std::int32_t last_column) const {
  std::uint64_t changes = 0;
  for (std::int32_t index = first_column; index <= last_column; ++index) {
    if (const NumberedColumn* found = FindColumn(index)) changes += found->changes;
  }
  return changes;
}

void Sheet::Cover(const CellRange& range) {
  if (!used_range_) {
    used_range_ = range;
    return;
  }
  used_range_->first_row = std::min(used_range_->first_row, range.first_row);
  used_range_->first_column = std::min(used_range_->first_column, range.first_column);
  used_range_->last_row = std::max(used_range_->last_row, range.last_row);
  used_range_->last_column = std::max(used_range_->last_column, range.last_column);
}

CellRange Sheet::Clipped(CellRange range) const {
  const bool all_rows = range.HasAllRows();
  const bool all_columns = range.HasAllColumns();
  if (all_rows) range.last_row = used_range_ ? used_range_->last_row : 0;
  if (all_columns) range.last_column = used_range_ ? used_range_->last_column : 0;
  return range;
}

const Value& Sheet::At(std::int32_t row, std::int32_t column_index) const {
  const Column& cells = column(column_index);
  const auto found = std::lower_bound(cells.begin(), cells.end(), row, RowBefore);
  return found != cells.end() && found->row == row ? found->value : kBlankValue;
}

void Sheet::Set(std::int32_t row, std::int32_t column_index, Value value) {
  NumberedColumn& column = ColumnFor(column_index);
  Column& cells = column.cells;
  ++column.changes;
  Cover({row, column_index, row, column_index});
  if (cells.empty() || cells.back().row < row) {
    cells.push_back({std::move(value), row});
    return;
  }
  const auto found = std::lower_bound(cells.begin(), cells.end(), row, RowBefore);
  if (found->row == row) {
    found->value = std::move(value);
  } else {
    cells.insert(found, {std::move(value), row});
  }
}

void Sheet::Append(std::int32_t row, std::int32_t column_index, Value value) {
  NumberedColumn& column = ColumnFor(column_index);
  ++column.changes;
  column.cells.push_back({std::move(value), row});
  Cover({row, column_index, row, column_index});
}

void Sheet::SortColumns() {
  for (NumberedColumn& column : columns_) {
    Column& cells = column.cells;
    ++column.changes;
    const auto in_order = [](const Entry& a, const Entry& b) { return a.row < b.row; };
    const auto out_of_order = std::adjacent_find(
        cells.begin(), cells.end(), [](const Entry& a, const Entry& b) { return a.row >= b.row; });
    if (out_of_order != cells.end()) {
      // The latest of equal entries come first, so that unique keeps them.
      std::reverse(cells.begin(), cells.end());
      std::stable_sort(cells.begin(), cells.end(), in_order);
      cells.erase(std::unique(cells.begin(), cells.end(),
                              [](const Entry& a, const Entry& b) { return a.row == b.row; }),
                  cells.end());
    }
    cells.shrink_to_fit();
  }
}

std::optional<std::uint32_t> Workbook::FindSheet(std::u16string_view name) const {
  for (std::size_t i = 0; i < sheets.size(); ++i) {
    if (EqualIgnoringCase(sheets[i].name(), name)) return static_cast<std::uint32_t>(i);
  }
  return std::nullopt;
}

const Table* Workbook::FindTable(std::u16string_view name) const {
  const auto found = std::find_if(tables.begin(), tables.end(), [&](const Table& table) {
    return EqualIgnoringCase(table.name, name);
  });
  return found == tables.end() ? nullptr : &*found;
}

const Table* Workbook::TableAt(const CellAddress& cell) const {
  const auto found = std::find_if(tables.begin(), tables.end(), [&](const Table& table) {
    return table.sheet == cell.sheet && table.range.Contains(cell.row, cell.column);
  });
  return found == tables.end() ? nullptr : &*found;
}

const DefinedName* Workbook::FindName(std::u16string_view name, std::uint32_t sheet) const {
  if (indexed_names_ != names.size()) {
    name_index_.clear();
    for (std::size_t i = 0; i < names.size(); ++i) name_index_.emplace(LowerCase(names[i].name), i);
    indexed_names_ = names.size();
  }
  const DefinedName* found = nullptr;
  const auto [first, last] = name_index_.equal_range(LowerCase(name));
  for (auto entry = first; entry != last; ++entry) {
    const DefinedName& candidate = names[entry->second];
    if (candidate.sheet == sheet) return &candidate;
    if (!candidate.sheet && found == nullptr) found = &candidate;
  }
  return found;
}

}  // namespace zavhost
