#pragma once

#include <optional>
#include <string_view>

#include "msexcel/windows/charts.h"
#include "msexcel/windows/names.h"
#include "msexcel/windows/object.h"
#include "msexcel/windows/range.h"
#include "msexcel/windows/tables.h"
#include "msexcel/windows/window.h"

namespace MsExcel {

class Application;
class Workbook;

/// XlSheetVisibility. A very hidden sheet is not in the user's list of hidden ones.
enum class Visibility : long { kVisible = -1, kHidden = 0, kVeryHidden = 2 };

/// What the protection of a sheet allows: the object of the same name.
class Protection : public ObjectOf<Protection> {
 public:
  static constexpr std::string_view kName = "Protection";
  using ObjectOf::ObjectOf;

  bool AllowFormattingCells() const { return Get<"AllowFormattingCells">().Flag(); }
  bool AllowFormattingColumns() const { return Get<"AllowFormattingColumns">().Flag(); }
  bool AllowFormattingRows() const { return Get<"AllowFormattingRows">().Flag(); }
  bool AllowInsertingColumns() const { return Get<"AllowInsertingColumns">().Flag(); }
  bool AllowInsertingRows() const { return Get<"AllowInsertingRows">().Flag(); }
  bool AllowInsertingHyperlinks() const { return Get<"AllowInsertingHyperlinks">().Flag(); }
  bool AllowDeletingColumns() const { return Get<"AllowDeletingColumns">().Flag(); }
  bool AllowDeletingRows() const { return Get<"AllowDeletingRows">().Flag(); }
  bool AllowSorting() const { return Get<"AllowSorting">().Flag(); }
  bool AllowFiltering() const { return Get<"AllowFiltering">().Flag(); }
  bool AllowUsingPivotTables() const { return Get<"AllowUsingPivotTables">().Flag(); }
};

class PageSetup : public ObjectOf<PageSetup> {
 public:
  static constexpr std::string_view kName = "PageSetup";
  using ObjectOf::ObjectOf;

  void SetPrintArea(std::u16string_view address) const { Put<"PrintArea">(address); }
  void SetLandscape() const { Put<"Orientation">(2); }
  /// On as many pages as it takes, each as wide as the cells.
  void FitToWidth() const {
    Put<"Zoom">(false);
    Put<"FitToPagesWide">(1);
    Put<"FitToPagesTall">(false);
  }
};

class Worksheet : public ObjectOf<Worksheet> {
 public:
  static constexpr std::string_view kName = "Worksheet";
  using ObjectOf::ObjectOf;

  std::u16string Name() const { return Get<"Name">().Text(); }
  /// Throws VekCantRenameWorksheet.
  void Rename(std::u16string_view name) const;
  long Type() const { return Get<"Type">().Integer(); }
  Visibility Visible() const { return static_cast<Visibility>(Get<"Visible">().Integer()); }
  void SetVisible(Visibility visible) const { Put<"Visible">(static_cast<long>(visible)); }

  Workbook ParentBook() const;
  MsExcel::Range Range(std::u16string_view address) const {
    return Get<"Range">({address}).As<MsExcel::Range>();
  }
  /// Rows and columns from 1.
  MsExcel::Range Area(long row, long column, long rows, long columns) const {
    return Cells().Cell(row, column).Resized(rows, columns);
  }
  MsExcel::Range Cells() const { return Get<"Cells">().As<MsExcel::Range>(); }
  MsExcel::Range UsedRange() const { return Get<"UsedRange">().As<MsExcel::Range>(); }
  MsExcel::ListObjects ListObjects() const {
    return Get<"ListObjects">().As<MsExcel::ListObjects>();
  }
  MsExcel::PivotTables PivotTables() const {
    return Get<"PivotTables">().As<MsExcel::PivotTables>();
  }
  MsExcel::ChartObjects ChartObjects() const {
    return Get<"ChartObjects">().As<MsExcel::ChartObjects>();
  }
  MsExcel::Names Names() const { return Get<"Names">().As<MsExcel::Names>(); }
  MsExcel::PageSetup PageSetup() const { return Get<"PageSetup">().As<MsExcel::PageSetup>(); }

  bool ProtectContents() const { return Get<"ProtectContents">().Flag(); }
  bool ProtectDrawingObjects() const { return Get<"ProtectDrawingObjects">().Flag(); }
  bool ProtectScenarios() const { return Get<"ProtectScenarios">().Flag(); }
  /// True if only the user is kept from changes, and macros are not.
  bool ProtectionMode() const { return Get<"ProtectionMode">().Flag(); }
  MsExcel::Protection Protection() const { return Get<"Protection">().As<MsExcel::Protection>(); }
  void Unprotect(std::u16string_view password) const { Call<"Unprotect">({password}); }

  void Activate() const { Call<"Activate">(); }
  /// Asks the user, unless alerts are off.
  void Delete() const { Call<"Delete">(); }

 private:
  friend class SheetProtection;
};

/// How a sheet is protected, as Worksheet.Protect takes it.
class SheetProtection {
 public:
  /// As the sheet is protected now.
  explicit SheetProtection(const Worksheet& sheet);

  bool is_protected() const { return contents_ || drawing_objects_ || scenarios_; }
  void PutBack(const Worksheet& sheet, std::u16string_view password) const;

 private:
  bool contents_, drawing_objects_, scenarios_, user_interface_only_;
  // In the order of the method's parameters.
  bool formatting_cells_ = false, formatting_columns_ = false, formatting_rows_ = false;
  bool inserting_columns_ = false, inserting_rows_ = false, inserting_hyperlinks_ = false;
  bool deleting_columns_ = false, deleting_rows_ = false;
  bool sorting_ = false, filtering_ = false, pivot_tables_ = false;
};

class Worksheets : public Collection<Worksheets, Worksheet> {
 public:
  static constexpr std::string_view kName = "Worksheets";
  using Collection::Collection;

  /// Nothing if there is no such sheet.
  std::optional<Worksheet> Find(std::u16string_view name) const;
  /// Throws VekCantAddWorksheet.
  Worksheet AddAfter(const Worksheet& sheet) const;
};

class Workbook : public ObjectOf<Workbook> {
 public:
  static constexpr std::string_view kName = "Workbook";
  using ObjectOf::ObjectOf;

  std::u16string Name() const { return Get<"Name">().Text(); }
  std::u16string FullName() const { return Get<"FullName">().Text(); }
  bool ProtectStructure() const { return Get<"ProtectStructure">().Flag(); }

  Application ExcelApplication() const;
  MsExcel::Worksheets Worksheets() const { return Get<"Worksheets">().As<MsExcel::Worksheets>(); }
  /// With the sheets that are no worksheets; these have only a name.
  MsExcel::Worksheets Sheets() const { return Get<"Sheets">().As<MsExcel::Worksheets>(); }
  MsExcel::Names Names() const { return Get<"Names">().As<MsExcel::Names>(); }
  MsExcel::Windows Windows() const { return Get<"Windows">().As<MsExcel::Windows>(); }

  void Activate() const { Call<"Activate">(); }
  void Save() const { Call<"Save">(); }
  void SaveCopyAs(std::u16string_view file) const { Call<"SaveCopyAs">({file}); }
  void Close(bool save_changes) const { Call<"Close">({save_changes}); }
};

class Workbooks : public Collection<Workbooks, Workbook> {
 public:
  static constexpr std::string_view kName = "Workbooks";
  using Collection::Collection;

  Workbook Add() const { return Call<"Add">().As<Workbook>(); }
  Workbook Open(std::u16string_view file) const { return Call<"Open">({file}).As<Workbook>(); }
};

}  // namespace MsExcel
