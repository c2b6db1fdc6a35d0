#pragma once

#include <string_view>

#include "msexcel/windows/object.h"
#include "msexcel/windows/range.h"

namespace MsExcel {

/// A window that shows a workbook.
class Window : public ObjectOf<Window> {
 public:
  static constexpr std::string_view kName = "Window";
  using ObjectOf::ObjectOf;

  std::u16string Caption() const { return Get<"Caption">().Text(); }
  bool Visible() const { return Get<"Visible">().Flag(); }
  /// Of the active sheet.
  void SetDisplayGridlines(bool on) const { Put<"DisplayGridlines">(on); }
  void SetZoom(long percent) const { Put<"Zoom">(percent); }
  /// The selected cells, also while a chart is selected.
  Range RangeSelection() const { return Get<"RangeSelection">().As<Range>(); }
  void Activate() const { Call<"Activate">(); }
};

class Windows : public Collection<Windows, Window> {
 public:
  static constexpr std::string_view kName = "Windows";
  using Collection::Collection;
};

}  // namespace MsExcel
