#pragma once

#include <array>
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

/// How a sheet is protected, as Worksheet.Protect takes it.
struct SheetProtection {
  bool drawing_objects = true;
  bool contents = true;
  bool scenarios = true;
  /// Only the user is kept from changes, and macros are not.
  bool user_interface_only = false;
  /// Formatting cells, columns, rows; inserting columns, rows, hyperlinks; deleting columns, rows;
  /// sorting, filtering, using pivot tables.
  std::array<bool, 11> allowed{};

  bool is_protected() const { return drawing_objects || contents || scenarios; }
  bool operator==(const SheetProtection&) const = default;
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

  SheetProtection CurrentProtection() const;
  /// Without a password if it is empty.
  void Protect(std::u16string_view password, const SheetProtection& protection = {}) const;
  void Unprotect(std::u16string_view password) const { Call<"Unprotect">({password}); }

  void Activate() const { Call<"Activate">(); }
  /// Asks the user, unless alerts are off.
  void Delete() const { Call<"Delete">(); }
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
  /// Keeps sheets from being added, moved and removed.
  void Protect(std::u16string_view password) const { Call<"Protect">({password, true}); }
  void Unprotect(std::u16string_view password) const { Call<"Unprotect">({password}); }
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
