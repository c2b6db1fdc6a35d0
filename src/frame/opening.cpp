#include "frame/opening.h"

#include <exception>
#include <string>

#include "contracts/log_files.h"
#include "contracts/message_ids.h"
#include "diagnostics/log.h"
#include "diagnostics/log_line.h"
#include "diagnostics/message_library.h"
#include "excel/excel_call.h"
#include "excel/value_text.h"
#include "platform/library_identity.h"
#include "platform/memory_status.h"
#include "platform/message_box.h"
#include "platform/module.h"
#include "platform/operating_system.h"
#include "platform/temporary_folder.h"
#include "platform/utf.h"

namespace zavrel {
namespace {

/// The arguments of the latest successful opening.
struct {
  AddIn add_in;
  SessionServices (*services)() = nullptr;
} opened_with;

/// Finds Excel's callback: the loaded module XLCall32 returns it, or Excel's program exports it.
/// This happens when the add-in opens, because at process attach XLCall32's code must not be
/// called. Once found, the callback is kept for the life of the process. Otherwise returns, for the
/// log, what each way led to.
std::string FindExcelCallback() {
  if (ExcelCallback() != nullptr) return {};
  Excel12Callback callback = nullptr;
  const auto older_route = LoadedModule::ByName(u"XLCall32");
  const auto get = older_route ? older_route->FindExport("GetExcel12EntryPt") : nullptr;
  if (get != nullptr) callback = AsFunction<Excel12Callback()>(get)();
  if (callback == nullptr) {
    if (const auto found = LoadedModule::HostExecutable().FindExport("MdCallBack12")) {
      callback = AsFunction<int(int, int, XLOPER12**, XLOPER12*)>(found);
    }
  }
  if (callback != nullptr) {
    SetExcelCallback(callback);
    return {};
  }
  const char* older = "is not loaded";
  if (older_route) older = "has no GetExcel12EntryPt";
  if (get != nullptr) older = "returned none";
  return std::string("XLCall32 ") + older + ", and the program has no MdCallBack12";
}

/// Writes why the callback is missing; without one, calls fail as this line says.
void WriteMissingCallback(const std::string& reason) {
  if (reason.empty()) return;
  LogLine("{}{}; return code {}, value {}\n", kNoCallback, reason, xlretFailed,
          ErrorName(xlerrValue));
}

/// The version that Excel gives to commands, and to the opening as one of them: "16.0".
std::string ExcelVersion() {
  constexpr double kVersionItem = 2;
  const ExcelResult answer = CallExcel(xlfGetWorkspace, {XXloper::Number(kVersionItem)});
  const std::string version = Utf8FromUtf16(answer.value.text());
  return answer.ok() && !version.empty() ? version : "unknown";
}

std::string Megabytes(std::uint64_t bytes) { return std::to_string(bytes >> 20); }

void WriteOpeningLines() {
  if (EnabledLog() == nullptr) return;
  const LibraryIdentity& library = LibraryIdentity::OfThisLibrary();
  LogComposedLine([] { return "Exe fileName=" + Utf8FromPath(HostExecutablePath()); });
  LogComposedLine([&] { return "DLL fileName=" + Utf8FromPath(library.path); });
  LogComposedLine([&] { return "DLL fileVersion=" + Utf8FromUtf16(library.version_text); });
  LogComposedLine([] { return "Windows=" + Utf8FromUtf16(OperatingSystemDescription()); });
  LogComposedLine([] { return "xlAutoOpen, Excel version=" + ExcelVersion(); });
  LogComposedLine([] {
    const MemoryStatus memory = ReadMemoryStatus();
    return fmt::format(
        "Memory stats:load={}, totalPhys={} MB, availPhys={} MB, totalVirtual={} MB, "
        "availVirtual={} MB",
        memory.load_percent, Megabytes(memory.total_physical), Megabytes(memory.available_physical),
        Megabytes(memory.total_virtual), Megabytes(memory.available_virtual));
  });
}

/// Shows a failure to open. The session is gone, so the texts are loaded again; if that fails,
/// nothing can be shown.
void ShowFailure(const VekException& failure) noexcept {
  try {
    const MessageLibrary messages = MessageLibrary::Open(LibraryIdentity::OfThisLibrary().folder());
    const std::uint32_t language = ThreadPrimaryLanguage();
    std::u16string text =
        ComposeMessage(messages.Text(failure.message_id(), language), failure.arguments());
    if (text.empty()) text = failure.class_name() + u": " + Utf16FromUtf8(failure.place());
    LogComposedLine([&] { return "xlAutoOpen failed: " + Utf8FromUtf16(text); });
    ShowErrorBox(messages.Text(messages::kMessageTitle, language), text);
  } catch (...) {
  }
}

}  // namespace

bool OpenAddIn(AddIn add_in, SessionServices (*services)()) noexcept {
  if (Session::Current() != nullptr) {
    LogLine("xlAutoOpen: open already\n");
    RunningCall::closes_ = false;
    return true;
  }
  try {
    const std::string no_callback = FindExcelCallback();
    // The system calls back into this library when a thread ends, and the log runs a thread. The
    // library's code must stay even if the library is released before the add-in is closed.
    PinModuleContaining(&opened_with);
    OpenLog(TemporaryFolder(), SessionName(add_in.name));
    WriteOpeningLines();
    WriteMissingCallback(no_callback);
    Session::Open(add_in, services());
    opened_with = {add_in, services};
    return true;
  } catch (const VekException& failure) {
    ShowFailure(failure);
  } catch (...) {
    // Any other exception, usually exhausted memory: nothing may cross into Excel, and the user
    // only learns that the add-in did not start.
    try {
      ShowFailure(VekUnknownException("xlAutoOpen", messages::kMessageStartFailed,
                                      {std::u16string(add_in.name)}));
    } catch (...) {
    }
  }
  CloseLog();
  return false;
}

bool ReopenAddIn() noexcept {
  return opened_with.services != nullptr && OpenAddIn(opened_with.add_in, opened_with.services);
}

void CloseAddIn() noexcept {
  if (Session::Current() == nullptr) return;
  RunningCall::closes_ = RunningCall::running_ > 0;
  if (RunningCall::closes_) return;
  {
    const ScopedTrace trace("xlAutoClose");
    Session::Close();
  }
  LogLine("{}: About to close log file with logFile.reset ().\n", "xlAutoClose");
  CloseLog();
}

RunningCall::~RunningCall() {
  if (--running_ == 0 && closes_) CloseAddIn();
}

}  // namespace zavrel
