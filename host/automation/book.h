#pragma once
// A workbook that is being edited: what its cells hold, how they look, and all else that the
// automation objects show of it. The values of cells are those of the engine's workbook; its
// formulas, names and tables are made anew from here before each calculation.

#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "host/automation/cell_styles.h"
#include "host/automation/chart.h"
#include "host/calc/engine.h"

namespace zavhost {

inline constexpr std::int32_t kSheetVisible = -1;
inline constexpr std::int32_t kSheetHidden = 0;
inline constexpr std::int32_t kSheetVeryHidden = 2;

/// A formula of a cell, or of the range of an array formula.
struct CellFormula {
  std::u16string text;  // without its "="
  std::optional<CellRange> array;
  bool is_dynamic = false;
  bool is_new = true;  // not calculated yet
};

/// What a protected sheet still allows, in the order of Worksheet.Protect's parameters.
enum SheetPermission {
  kFormattingCells,
  kFormattingColumns,
  kFormattingRows,
  kInsertingColumns,
  kInsertingRows,
  kInsertingHyperlinks,
  kDeletingColumns,
  kDeletingRows,
  kSorting,
  kFiltering,
  kUsingPivotTables,
  kPermissionCount,
};

struct SheetProtection {
  bool of_contents = false;
  bool of_drawing_objects = false;
  bool of_scenarios = false;
  bool is_for_users_only = false;  // macros may change everything
  bool permissions[kPermissionCount] = {};
  std::uint16_t password = 0;  // its hash; 0 without one

  bool IsAny() const { return of_contents || of_drawing_objects || of_scenarios; }
};

struct PivotTableState {
  std::u16string name;
  CellRange range;
  CellRange data;
  int refreshes = 0;
};

/// How a sheet is printed; 0 stands for FALSE.
struct PageLayout {
  std::u16string print_area;
  std::int32_t orientation = 1;  // 2: landscape
  std::int32_t zoom = 100;
  std::int32_t pages_wide = 1;
  std::int32_t pages_tall = 1;
};

/// What the window shows of a sheet; rows and columns from 1.
struct SheetView {
  bool has_gridlines = true;
  std::int32_t zoom = 100;
  bool is_frozen = false;
  std::int32_t split_row = 0;
  std::int32_t split_column = 0;
  std::int32_t scroll_row = 1;
  std::int32_t scroll_column = 1;
  std::vector<CellRange> selection{CellRange{}};
};

struct SheetState {
  std::u16string name;
  std::int32_t visibility = kSheetVisible;
  std::map<CellPosition, CellFormula> formulas;
  CellStyles styles;
  std::map<std::int32_t, double> column_widths;  // in characters
  std::map<std::int32_t, double> row_heights;    // in points
  std::set<std::int32_t> hidden_columns;
  std::set<std::int32_t> hidden_rows;
  std::vector<CellRange> merged;
  SheetProtection protection;
  std::int32_t enable_selection = 0;
  PageLayout page;
  SheetView view;
  std::vector<std::shared_ptr<Chart>> charts;
  std::vector<std::shared_ptr<Table>> tables;
  std::vector<std::shared_ptr<PivotTableState>> pivot_tables;
  int charts_made = 0;
  bool is_deleted = false;
};
using SheetPtr = std::shared_ptr<SheetState>;

struct NameState {
  std::u16string name;
  std::u16string text;  // its formula, without its "="
  SheetPtr sheet;       // local to this sheet
  bool is_visible = true;
  bool is_deleted = false;
};

class Book {
 public:
  /// Loads the add-ins. Throws WorkbookError.
  Book(Workbook workbook, std::filesystem::path file,
       const std::vector<std::filesystem::path>& add_ins);

  std::u16string name;
  std::filesystem::path file;  // empty until it is saved
  bool is_saved = true;
  bool is_read_only = false;
  bool is_closed = false;
  bool is_structure_protected = false;
  std::uint16_t structure_password = 0;
  bool is_window_visible = true;
  std::u16string caption;
  SheetPtr active;

  const std::vector<SheetPtr>& sheets() const { return sheets_; }
  std::vector<std::shared_ptr<NameState>>& names() { return names_; }
  const std::vector<std::shared_ptr<NameState>>& names() const { return names_; }
  Engine& engine() { return *engine_; }
  std::optional<std::size_t> IndexOf(const SheetState& sheet) const;
  SheetPtr FindSheet(std::u16string_view wanted) const;
  /// The cells of a sheet, without regard to what is not calculated yet.
  Sheet& CellsOf(const SheetState& sheet);

  /// A new sheet in front of the sheet with this index, with a name that none has yet.
  SheetPtr AddSheet(std::size_t index);
  /// A copy in front of the sheet with this index, without charts and tables.
  SheetPtr CopySheet(const SheetState& source, std::size_t index);
  void RemoveSheet(SheetState& sheet);
  /// Changes the references of all formulas, names and charts too.
  void RenameSheet(SheetState& sheet, std::u16string_view new_name);

  /// The formula that fills a cell, with its own cell; nothing if there is none.
  struct Found {
    CellPosition cell;
    CellFormula* formula;
  };
  std::optional<Found> FormulaAt(SheetState& sheet, const CellPosition& cell);
  /// True if cells of the range belong to an array formula that it does not hold whole.
  bool SplitsArray(SheetState& sheet, const CellRange& range);

  /// What a cell holds, in place of what it held.
  void SetValue(SheetState& sheet, const CellPosition& cell, Value value);
  void SetFormula(SheetState& sheet, const CellPosition& cell, CellFormula formula);
  void ClearContents(SheetState& sheet, const CellRange& range);

  /// Something changed that formulas may depend on.
  void Touch() {
    is_dirty_ = true;
    is_saved = false;
  }
  /// Formulas, names and tables of the engine's workbook as they are here.
  void Renew();
  /// Throws WorkbookError.
  void Calculate();
  void CalculateIfDirty() {
    if (is_dirty_) Calculate();
  }

 private:
  void DropFormulas(SheetState& sheet, const CellRange& range);
  void DropFormula(SheetState& sheet, std::map<CellPosition, CellFormula>::iterator place);
  void RewriteTexts(const std::function<std::u16string(std::u16string_view)>& rewrite);
  void TakeOver(const Workbook& workbook);
  SheetPtr Insert(SheetPtr sheet, std::size_t index);
  std::u16string FreeName() const;

  std::vector<SheetPtr> sheets_;
  std::vector<std::shared_ptr<NameState>> names_;
  std::unique_ptr<Engine> engine_;
  bool is_dirty_ = true;
  int sheets_made_ = 0;
};
using BookPtr = std::shared_ptr<Book>;

}  // namespace zavhost
