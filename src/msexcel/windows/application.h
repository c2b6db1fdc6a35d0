#pragma once

#include <optional>
#include <string_view>

#include "msexcel/windows/object.h"

namespace MsExcel {

class Range;
class Window;
class Windows;
class Workbook;
class Workbooks;
class Worksheet;

/// XlCalculation.
enum class Calculation : long { kAutomatic = -4105, kManual = -4135, kSemiautomatic = 2 };

/// Excel itself.
class Application : public ObjectOf<Application> {
 public:
  static constexpr std::string_view kName = "Application";
  using ObjectOf::ObjectOf;

  std::u16string Version() const { return Get<"Version">().Text(); }
  /// The handle of the main window.
  long Hwnd() const { return Get<"Hwnd">().Integer(); }

  bool ScreenUpdating() const { return Get<"ScreenUpdating">().Flag(); }
  void SetScreenUpdating(bool on) const { Put<"ScreenUpdating">(on); }
  bool EnableEvents() const { return Get<"EnableEvents">().Flag(); }
  void SetEnableEvents(bool on) const { Put<"EnableEvents">(on); }
  /// Without, Excel takes the default answer of every question.
  bool DisplayAlerts() const { return Get<"DisplayAlerts">().Flag(); }
  void SetDisplayAlerts(bool on) const { Put<"DisplayAlerts">(on); }
  /// Fails while no workbook is open.
  MsExcel::Calculation CalculationMode() const {
    return static_cast<MsExcel::Calculation>(Get<"Calculation">().Integer());
  }
  void SetCalculationMode(MsExcel::Calculation mode) const {
    Put<"Calculation">(static_cast<long>(mode));
  }

  Workbooks OpenBooks() const;
  Windows OpenWindows() const;
  std::optional<Workbook> ActiveWorkbook() const;
  std::optional<Window> ActiveWindow() const;
  /// Nothing if the active sheet is no worksheet.
  std::optional<Worksheet> ActiveSheet() const;
  /// Nothing if something else than cells is selected.
  std::optional<Range> SelectedCells() const;

  /// The cells whose formula is being calculated; nothing outside of a calculation.
  std::optional<Range> Caller() const;

  /// Asks the user for a range; nothing if he cancels.
  std::optional<Range> AskForRange(std::u16string_view prompt, std::u16string_view title,
                                   std::u16string_view proposal) const;
};

}  // namespace MsExcel
