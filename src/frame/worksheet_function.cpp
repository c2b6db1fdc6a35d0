#include "frame/worksheet_function.h"

#include <algorithm>
#include <new>

#include "contracts/message_ids.h"
#include "diagnostics/log.h"
#include "diagnostics/vek_exception.h"
#include "excel/result_holder.h"
#include "frame/formula_inspection.h"
#include "frame/session.h"

namespace zavrel::frame {
namespace {

/// True when the body ended by returning. Whatever a body throws ends here.
bool RunTraced(const char* name, Body body) noexcept {
  auto traced = [&] {
    const ScopedTrace trace(name);
    body.run(body.object);
  };
  return RunUntracedBody(Erase(traced));
}

void InspectCallingFormula() noexcept {
  if (void* application = Session::Current()->excel_application(); application != nullptr) {
    CorrectedXloper::Is16384InCellFormula(application);
  }
}

std::uint32_t Record(const VekException& failure) {
  Session* session = Session::Current();
  return session != nullptr ? session->failures().Record(failure) : 0;
}

}  // namespace

bool RunUntracedBody(Body body) noexcept {
  try {
    body.run(body.object);
    return true;
  } catch (...) {
    return false;
  }
}

bool RunWorksheetBody(const char* name, Body body) noexcept {
  Session* session = Session::Current();
  if (session == nullptr) return false;
  InspectCallingFormula();
  const bool returned = RunTraced(name, body);
  session->KeepUpCaches(UpkeepMode::kAfterCall);
  return returned;
}

XLOPER12* RunValueBody(const char* name, Body body, XXloper& result) noexcept {
  if (!RunWorksheetBody(name, body)) result = XXloper::Error(ExcelError::kNA);
  return ReturnToExcel(result);
}

std::uint32_t RunMacroBody(const char* name, Body body) noexcept {
  try {
    try {
      const ScopedTrace trace(name);
      body.run(body.object);
      return 0;
    } catch (const VekException& failure) {
      return Record(failure);
    } catch (const std::bad_alloc&) {
      return Record(VekOutOfMemory(name, messages::kMessageOutOfMemory));
    } catch (...) {
      return Record(VekUnknownException(name, messages::kMessageUnknownException));
    }
  } catch (...) {
    // Not even the record could be made: the number of a failure that the store does not hold.
    return kUnrecordedFailure;
  }
}

bool RunStatusBody(const char* name, Body body) noexcept { return RunTraced(name, body); }

const char* KeepText(const std::string& text) noexcept {
  thread_local std::array<char, 256> kept;
  const std::size_t size = std::min(text.size(), kept.size() - 1);
  std::copy_n(text.data(), size, kept.data());
  kept[size] = '\0';
  return kept.data();
}

}  // namespace zavrel::frame
