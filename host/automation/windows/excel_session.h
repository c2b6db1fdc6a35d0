#pragma once
// The host's workbooks as automation objects: an emulation of the part of Excel's object model that
// the wrappers over Excel's automation use. It is made from Excel's documentation and has never
// been held against a real Excel.
//
// Members, their parameters and their types are tables, one for each class (range.cpp and so on).
// A call with anything else fails as in Excel, with DISP_E_UNKNOWNNAME, DISP_E_MEMBERNOTFOUND,
// DISP_E_BADPARAMCOUNT or DISP_E_TYPEMISMATCH. Excel's own refusals come as DISP_E_EXCEPTION with
// kExcelError and its text.

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/automation/windows/faults.h"
#include "host/calc/engine.h"

namespace zavhost {

struct ExcelSessionOptions {
  /// Loaded into every workbook; without them their functions give #NAME?.
  std::vector<std::filesystem::path> add_ins{};
  /// International(xlCountryCode), (xlCountrySetting), (xlDecimalSeparator), (xlListSeparator).
  int country = 1;
  int country_setting = 1;
  char16_t decimal_separator = u'.';
  char16_t list_separator = u',';
};

/// One Excel. Its objects may outlive it: their calls then fail with RPC_E_DISCONNECTED.
///
/// Not emulated: R1C1 style, several windows of a workbook, references between workbooks, undo, and
/// the calculation of a single formula as it is entered in manual mode (it shows 0 until the next
/// calculation).
class ExcelSession {
 public:
  explicit ExcelSession(ExcelSessionOptions options = {});
  ~ExcelSession();
  ExcelSession(const ExcelSession&) = delete;
  ExcelSession& operator=(const ExcelSession&) = delete;

  /// The Application object; the session holds it.
  IDispatch* application() const;

  /// A new workbook with one sheet "Sheet1", which becomes the active one.
  void AddWorkbook();
  /// Opens an .xlsx or .csv file. Throws WorkbookError.
  void Open(const std::filesystem::path& file);
  /// The calculated engine of the active workbook, with what is in its cells. Throws WorkbookError
  /// if there is no workbook.
  Engine& engine() const;

  /// The next answer to Application.InputBox: the text that a user types; a reference for Type 8.
  void QueueInput(std::u16string_view text);
  /// The next answer to Application.InputBox is a click on Cancel, as it is if none is queued.
  void QueueCancel();

  /// A pivot table on a sheet, for its ranges: "B3:D9" with headings, and "C4:D9" of its values.
  void PlantPivotTable(std::u16string_view sheet, std::u16string_view name,
                       std::string_view table_range, std::string_view data_range);

  Faults& faults() const;
  /// The objects that somebody still holds, without the session's own.
  std::size_t live_objects() const;

 private:
  class State;
  std::unique_ptr<State> state_;
};

}  // namespace zavhost
