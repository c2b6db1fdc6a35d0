#include "frame/worksheet_function.h"

#include <algorithm>
#include <new>

#include "excel/result_holder.h"
#include "excel/value_text.h"
#include "excel/wide_text.h"
#include "frame/formula_inspection.h"
#include "frame/opening.h"

namespace zavrel {
namespace {

void InspectCallingFormula() noexcept {
  if (void* application = Session::Current()->excel_application(); application != nullptr) {
    CorrectedXloper::Is16384InCellFormula(application);
  }
}

CellResult ResultOf(const Reading& reading, Arguments arguments,
                    FunctionRef<CellResult(const Parameters& read)> body) {
  const OrFailure<Parameters> read = reading.Read(arguments);
  if (!read.ok()) return read.failure();
  return body(*read);
}

/// The result as the reading has it shown.
XXloper Shown(const Reading& reading, const XXloper& result) {
  return reading.shows_empty_text() && result.Is(xltypeErr) ? XXloper::EmptyText() : result;
}

}  // namespace

bool frame::RunWorksheetBody(const char* name, FunctionRef<void()> body,
                             ResultText result) noexcept {
  const RunningCall running;
  Session* session = Session::Current();
  if (session == nullptr) return false;
  InspectCallingFormula();
  const bool returned = RunTracedBody(name, body, result);
  session->KeepUpCaches(UpkeepMode::kAfterCall);
  return returned;
}

const char* frame::KeepText(const std::string& text) noexcept {
  // Not a thread_local: its first use would take memory, and end the process if there is none.
  static std::array<char, 256> kept;
  const std::size_t size = std::min(text.size(), kept.size() - 1);
  std::copy_n(text.data(), size, kept.data());
  kept[size] = '\0';
  return kept.data();
}

std::string frame::KeptText(const char* text) {
  return text == nullptr ? "none" : ValueText(XXloper::Text(Utf16FromUtf8(text)).record());
}

XLOPER12* WorksheetFunction(const char* name, const Reading& reading, Arguments arguments,
                            FunctionRef<CellResult(const Parameters& read)> body) noexcept {
  const XXloper thrown = XXloper::Error(ExcelError::kNA);
  XXloper shown = thrown;
  const auto run = [&] {
    shown = Shown(reading, thrown);
    bool has_failed = true;
    try {
      const CellResult result = ResultOf(reading, arguments, body);
      has_failed = !result.ok() && !result.failure().uncalculated();
      shown = Shown(reading, result.shown());
    } catch (const std::bad_alloc&) {
      shown = Shown(reading, XXloper::Error(reading.without_memory()));
    } catch (...) {  // shows #N/A
    }
    if (has_failed) reading.Failed();
  };
  frame::RunWorksheetBody(name, run, [&] { return ValueText(shown.record()); });
  return ReturnToExcel(shown);
}

XLOPER12* WorksheetFunction(const char* name, FunctionRef<CellResult()> body) noexcept {
  return WorksheetFunction(name, Reading(""), Arguments(),
                           [&](const Parameters&) { return body(); });
}

}  // namespace zavrel
