#pragma once
// The workbook as the host holds it: sheets of sparse columns, formulas and defined names. What the
// host does not understand stays in the file it came from and is written back untouched.

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "host/workbook/value.h"

namespace zavhost {

/// A file that cannot be used; what() is one clear line for the user.
class WorkbookError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// One worksheet. A column is a vector of (row, value) in ascending row order, so that a file that
/// puts one cell in every corner costs what it holds and no more.
class Sheet {
 public:
  struct Entry {
    std::int32_t row;
    Value value;
  };
  using Column = std::vector<Entry>;

  explicit Sheet(std::u16string name) : name_(std::move(name)) {}

  const std::u16string& name() const { return name_; }
  /// The cell's value; blank where nothing is stored.
  const Value& At(std::int32_t row, std::int32_t column) const;
  /// Stores a value; cheapest when the rows of a column come in ascending order.
  void Set(std::int32_t row, std::int32_t column, Value value);
  /// Appends without looking for the place; call SortColumns when all are in, before any reading.
  /// Later entries of the same cell win.
  void Append(std::int32_t row, std::int32_t column, Value value);
  void SortColumns();

  /// The stored cells of one column, ascending by row; empty where the column has none.
  const Column& column(std::int32_t index) const;
  /// The smallest rectangle that holds every stored and covered cell; nothing on an empty sheet.
  /// Costs nothing.
  const std::optional<CellRange>& used_range() const { return used_range_; }
  /// Makes the used range hold these cells as well: a formula will fill them.
  void Cover(const CellRange& range);
  /// The range with whole columns and whole rows cut off where the used range ends.
  CellRange Clipped(CellRange range) const;
  bool is_protected() const { return protected_; }
  void set_protected(bool is_protected) { protected_ = is_protected; }
  /// False for a chart sheet and other sheets without cells.
  bool has_cells() const { return has_cells_; }
  void set_has_cells(bool has_cells) { has_cells_ = has_cells; }

 private:
  struct NumberedColumn {
    std::int32_t index;
    Column cells;
  };

  Column* FindColumn(std::int32_t index);
  Column& ColumnFor(std::int32_t index);

  std::u16string name_;
  std::vector<NumberedColumn> columns_;  // those that hold cells, ascending by index
  std::optional<CellRange> used_range_;
  bool protected_ = false;
  bool has_cells_ = true;
};

/// A formula as stored. Several cells of a shared formula have the same text index and origin; the
/// text's relative references hold for the origin and move with the cell.
struct FormulaCell {
  CellAddress address;
  std::uint32_t text = 0;  // index into Workbook::formula_texts
  CellAddress origin;      // the cell that the text was written for
  /// The range of an array formula, often of one cell; `address` is its top left.
  std::optional<CellRange> array;
};

struct DefinedName {
  std::u16string name;
  std::u16string text;                 // what it refers to, without a leading "="
  std::optional<std::uint32_t> sheet;  // local to this sheet
};

class Workbook {
 public:
  std::vector<Sheet> sheets;
  std::vector<std::u16string> formula_texts;  // without the leading "="
  std::vector<FormulaCell> formulas;          // in file order: sheets, then rows, then columns
  std::vector<DefinedName> names;
  /// Formula cells whose text the file does not give (a part of a shared formula that is not
  /// there): they keep the value stored in the file.
  std::vector<CellAddress> unreadable_formulas;
  bool date1904 = false;
  std::u16string file_name = u"Book1.xlsx";  // last component only

  /// Sheet by name, in any letter case.
  std::optional<std::uint32_t> FindSheet(std::u16string_view name) const;
  /// The name as seen from a sheet: its own names first, then the workbook's; any letter case.
  const DefinedName* FindName(std::u16string_view name, std::uint32_t sheet) const;

 private:
  /// Places in `names` by name in lower case, made anew when the number of names has changed.
  mutable std::unordered_multimap<std::u16string, std::size_t> name_index_;
  mutable std::size_t indexed_names_ = 0;
};

}  // namespace zavhost
