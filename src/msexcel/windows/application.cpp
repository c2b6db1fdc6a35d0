#include "msexcel/windows/application.h"

#include "msexcel/windows/range.h"
#include "msexcel/windows/window.h"
#include "msexcel/windows/workbook.h"

namespace MsExcel {
namespace {

/// Of XlSheetType, the worksheet.
constexpr long kWorksheetType = -4167;
/// The type of InputBox that gives a range.
constexpr long kRangeWanted = 8;

}  // namespace

Workbooks Application::OpenBooks() const { return Get<"Workbooks">().As<Workbooks>(); }
Windows Application::OpenWindows() const { return Get<"Windows">().As<Windows>(); }
std::optional<Workbook> Application::ActiveWorkbook() const {
  return Get<"ActiveWorkbook">().AsOptional<Workbook>();
}
std::optional<Window> Application::ActiveWindow() const {
  return Get<"ActiveWindow">().AsOptional<Window>();
}

std::optional<Worksheet> Application::ActiveSheet() const {
  auto sheet = Get<"ActiveSheet">().AsOptional<Worksheet>();
  return sheet && sheet->Type() == kWorksheetType ? std::move(sheet) : std::nullopt;
}

std::optional<Range> Application::SelectedCells() const {
  // A selected chart has no cells, but its window remembers some.
  const auto window = ActiveWindow();
  return window && ActiveSheet() ? std::optional(window->RangeSelection()) : std::nullopt;
}

std::optional<Range> Application::Caller() const { return Get<"Caller">().AsOptional<Range>(); }

std::optional<Range> Application::AskForRange(std::u16string_view prompt, std::u16string_view title,
                                              std::u16string_view proposal) const {
  const Answer answer =
      Call<"InputBox">({prompt, title, proposal, Variant::Missing(), Variant::Missing(),
                        Variant::Missing(), Variant::Missing(), kRangeWanted});
  return answer.AsOptional<Range>();
}

}  // namespace MsExcel
