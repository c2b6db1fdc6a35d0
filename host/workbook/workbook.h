#pragma once
// The host's model of a workbook: sheets of sparse columns, formulas and defined names. Everything
// that the host does not understand stays in the original file and is written back unchanged.

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "host/workbook/value.h"

namespace zavhost {

/// A file cannot be used; what() is one clear line for the user.
class WorkbookError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// One worksheet. A column is a vector of (row, value) in ascending row order, so that a file with
/// one cell in every corner takes only the memory of these cells.
class Sheet {
 public:
  struct Entry {
    [[no_unique_address]] Value value;  // the row stands in the bytes behind it
    std::int32_t row;
  };
  static_assert(sizeof(Entry) == 16);
  using Column = std::vector<Entry>;

  explicit Sheet(std::u16string name) : name_(std::move(name)) {}

  const std::u16string& name() const { return name_; }
  void set_name(std::u16string name) { name_ = std::move(name); }
  /// The cell's value; blank where nothing is stored.
  const Value& At(std::int32_t row, std::int32_t column) const;
  /// Stores a value; cheapest if the rows of a column come in ascending order.
  void Set(std::int32_t row, std::int32_t column, Value value);
  /// Appends a value without searching its place; call SortColumns after the last one and before
  /// any reading. Later entries for the same cell win.
  void Append(std::int32_t row, std::int32_t column, Value value);
  void SortColumns();

  /// The stored cells of a column, ascending by row; empty if the column has none.
  const Column& column(std::int32_t index) const;
  /// A number that grows with every change of a cell of these columns.
  std::uint64_t changes(std::int32_t first_column, std::int32_t last_column) const;
  /// The smallest rectangle with every stored and covered cell; nothing for an empty sheet. Costs
  /// nothing.
  const std::optional<CellRange>& used_range() const { return used_range_; }
  /// Extends the used range to these cells, which a formula will fill.
  void Cover(const CellRange& range);
  /// The range, with whole columns and whole rows cut at the end of the used range.
  CellRange Clipped(CellRange range) const;
  /// Rows that are not shown, and the range of the automatic filter, which hides rows in it.
  void HideRow(std::int32_t row) { hidden_rows_.insert(row); }
  bool IsHidden(std::int32_t row) const { return hidden_rows_.contains(row); }
  const std::optional<CellRange>& filter() const { return filter_; }
  void set_filter(const CellRange& range) { filter_ = range; }
  bool is_protected() const { return protected_; }
  void set_protected(bool is_protected) { protected_ = is_protected; }
  /// False for a chart sheet and other sheets without cells.
  bool has_cells() const { return has_cells_; }
  void set_has_cells(bool has_cells) { has_cells_ = has_cells; }

 private:
  struct NumberedColumn {
    std::int32_t index;
    Column cells;
    std::uint64_t changes = 0;
  };

  const NumberedColumn* FindColumn(std::int32_t index) const;
  NumberedColumn& ColumnFor(std::int32_t index);

  std::u16string name_;
  std::vector<NumberedColumn> columns_;  // the columns with cells, ascending by index
  std::optional<CellRange> used_range_;
  std::unordered_set<std::int32_t> hidden_rows_;
  std::optional<CellRange> filter_;
  bool protected_ = false;
  bool has_cells_ = true;
};

/// A stored formula. The cells of a shared formula have the same text index and origin; the
/// relative references of the text are those of the origin and move with the cell.
struct FormulaCell {
  CellAddress address;
  std::uint32_t text = 0;  // index into Workbook::formula_texts
  CellAddress origin;      // the cell for which the text was written
  /// The range of an array formula, often a single cell; `address` is its top left.
  std::optional<CellRange> array;
  /// A dynamic array formula: the range takes the shape of its result.
  bool is_dynamic = false;
};

struct DefinedName {
  std::u16string name;
  std::u16string text;                 // its formula, without a leading "="
  std::optional<std::uint32_t> sheet;  // local to this sheet
};

/// A table: a range with a heading for every column, to which structured references refer.
struct Table {
  std::u16string name;
  std::uint32_t sheet = 0;
  CellRange range;  // with the rows of headings and totals
  std::int32_t heading_rows = 1;
  std::int32_t total_rows = 0;
  std::vector<std::u16string> columns;
};

class Workbook {
 public:
  std::vector<Sheet> sheets;
  std::vector<std::u16string> formula_texts;  // without the leading "="
  std::vector<FormulaCell> formulas;          // in file order: sheets, then rows, then columns
  std::vector<DefinedName> names;
  std::vector<Table> tables;
  /// Formula cells whose text is missing in the file (a part of a shared formula that does not
  /// exist); they keep the value stored in the file.
  std::vector<CellAddress> unreadable_formulas;
  bool date1904 = false;
  std::uint64_t kept_bytes = 0;  // what its cells, texts and formulas took when they were read
  std::u16string file_name = u"Book1.xlsx";  // last component only

  /// The sheet with this name, in any letter case.
  std::optional<std::uint32_t> FindSheet(std::u16string_view name) const;
  /// The table with this name, in any letter case, or null.
  const Table* FindTable(std::u16string_view name) const;
  /// The table that holds a cell, or null.
  const Table* TableAt(const CellAddress& cell) const;
  /// The name as seen from a sheet: its own names first, then the workbook's; any letter case.
  const DefinedName* FindName(std::u16string_view name, std::uint32_t sheet) const;

 private:
  /// Indices in `names` by name in lower case, rebuilt if the number of names has changed.
  mutable std::unordered_multimap<std::u16string, std::size_t> name_index_;
  mutable std::size_t indexed_names_ = 0;
};

}  // namespace zavhost
