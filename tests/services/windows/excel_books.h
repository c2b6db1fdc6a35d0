#pragma once
// An emulated Excel with an open workbook, through the wrappers.

#include <doctest/doctest.h>

#include <string>

#include "diagnostics/vek_exception.h"
#include "host/automation/windows/excel_session.h"
#include "msexcel/windows/application.h"
#include "msexcel/windows/workbook.h"
#include "platform/utf.h"

namespace zavrel::services::tests {

/// What a failure says, for messages of failed checks.
inline doctest::String ShownFailure(const VekException& failure) {
  std::string text = Utf8FromUtf16(failure.class_name()) + " in " + failure.place();
  for (const MessageArgument& argument : failure.arguments()) {
    if (const auto* value = std::get_if<std::u16string>(&argument))
      text += ", " + Utf8FromUtf16(*value);
  }
  return text.c_str();
}
inline const int kTranslated = [] {
  doctest::registerExceptionTranslator<const VekException&>(&ShownFailure);
  return 0;
}();

/// In the end all objects must be gone.
class OpenExcel {
 public:
  explicit OpenExcel(zavhost::ExcelSessionOptions options = {}) : session(std::move(options)) {
    session.AddWorkbook();
  }
  ~OpenExcel() { CHECK(session.live_objects() == 0); }
  OpenExcel(const OpenExcel&) = delete;
  OpenExcel& operator=(const OpenExcel&) = delete;

  MsExcel::Application application() const {
    return MsExcel::Application(MsExcel::Object(session.application()));
  }
  MsExcel::Workbook book() const { return *application().ActiveWorkbook(); }
  MsExcel::Worksheet sheet() const { return *application().ActiveSheet(); }
  MsExcel::Range range(std::u16string_view address) const { return sheet().Range(address); }

  /// Everything that the sheets of the workbook hold, as text.
  std::string Contents() const {
    std::string text;
    const MsExcel::Worksheets sheets = book().Worksheets();
    for (long i = 1; i <= sheets.Count(); ++i) {
      const MsExcel::Worksheet next = sheets.At(i);
      const MsExcel::Range used = next.UsedRange();
      text += Utf8FromUtf16(next.Name() + u" " + used.Address()) + ":";
      for (const MsExcel::CellValue& value : used.Formulas().values) text += " " + Shown(value);
      text += "; charts " + std::to_string(next.ChartObjects().Count()) + "\n";
    }
    return text;
  }

  static std::string Shown(const MsExcel::CellValue& value) {
    if (const auto* number = std::get_if<double>(&value)) return std::to_string(*number);
    if (const auto* text = std::get_if<std::u16string>(&value)) return Utf8FromUtf16(*text);
    if (const auto* flag = std::get_if<bool>(&value)) return *flag ? "TRUE" : "FALSE";
    if (const auto* error = std::get_if<MsExcel::ErrorValue>(&value))
      return "#" + std::to_string(error->number);
    return "-";
  }

  zavhost::ExcelSession session;
};

/// Lets every call of `work` into Excel fail in turn, until it makes no more, and checks `after`
/// each time.
template <class Work, class After>
std::size_t FailEveryCall(zavhost::Faults& faults, Work work, After after) {
  for (std::size_t k = 1;; ++k) {
    faults.Reset();
    faults.FailCall(k, {.status = static_cast<HRESULT>(0x800A03EC), .text = u"planted"});
    bool failed = false;
    try {
      work();
    } catch (const VekException&) {
      failed = true;
    }
    const bool reached = faults.calls() >= k;
    faults.Reset();
    if (!reached) return k - 1;
    CAPTURE(k);
    after(failed);
  }
}

}  // namespace zavrel::services::tests
