#include <windows.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstring>

#include "host/capi/crash_guard.h"

namespace zavhost {
namespace {

const Judge* guarded_judge = nullptr;

// The heap may be damaged, so this uses a fixed buffer and never allocates.
class Line {
 public:
  void Add(const char* text) {
    const std::size_t length = std::min(std::strlen(text), sizeof buffer_ - 1 - used_);
    std::memcpy(buffer_ + used_, text, length);
    used_ += length;
  }
  void AddAddress(ULONG_PTR address) {
    char digits[2 * sizeof address + 3];
    std::snprintf(digits, sizeof digits, "0x%llX", static_cast<unsigned long long>(address));
    Add(digits);
  }
  void Write() {
    buffer_[used_++] = '\n';
    DWORD written = 0;
    WriteFile(GetStdHandle(STD_ERROR_HANDLE), buffer_, static_cast<DWORD>(used_), &written,
              nullptr);
  }

 private:
  char buffer_[4096];
  std::size_t used_ = 0;
};

void AddPlace(Line& line) {
  const Place& place = *guarded_judge->place();
  line.Add("ZavHost: ");
  if (!place.cell.empty()) {
    line.Add(place.cell.c_str());
    line.Add(": ");
  }
  if (!place.formula.empty()) {
    line.Add(place.formula.c_str());
    line.Add(": ");
  }
}

void AddCause(Line& line, const EXCEPTION_RECORD& exception) {
  switch (exception.ExceptionCode) {
    case EXCEPTION_ACCESS_VIOLATION:
      line.Add(exception.ExceptionInformation[0] == 1 ? "writing address " : "reading address ");
      line.AddAddress(exception.ExceptionInformation[1]);
      break;
    case EXCEPTION_STACK_OVERFLOW:
      line.Add("stack overflow");
      break;
    case EXCEPTION_INT_DIVIDE_BY_ZERO:
      line.Add("integer division by zero");
      break;
    case EXCEPTION_ILLEGAL_INSTRUCTION:
      line.Add("illegal instruction");
      break;
    default:
      line.Add("exception ");
      line.AddAddress(exception.ExceptionCode);
      break;
  }
}

LONG WINAPI OnUnhandledException(EXCEPTION_POINTERS* pointers) {
  if (guarded_judge == nullptr) return EXCEPTION_CONTINUE_SEARCH;
  Line line;
  AddPlace(line);
  line.Add("the add-in crashed (");
  AddCause(line, *pointers->ExceptionRecord);
  line.Add(")");
  line.Write();
  TerminateProcess(GetCurrentProcess(), static_cast<UINT>(kCrashExitCode));
  return EXCEPTION_EXECUTE_HANDLER;
}

void OnAbort(int) {
  if (guarded_judge != nullptr) {
    Line line;
    AddPlace(line);
    line.Add("the add-in crashed (abort)");
    line.Write();
  }
  TerminateProcess(GetCurrentProcess(), static_cast<UINT>(kCrashExitCode));
}

}  // namespace

void EndCrashGuard(const Judge& judge) {
  if (guarded_judge == &judge) guarded_judge = nullptr;
}

void GuardAgainstCrashes(const Judge& judge) {
  guarded_judge = &judge;
  SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX | SEM_NOOPENFILEERRORBOX);
  SetUnhandledExceptionFilter(OnUnhandledException);
  std::signal(SIGABRT, OnAbort);
  // Stack space for the report after a stack overflow.
  ULONG bytes = 64 << 10;
  SetThreadStackGuarantee(&bytes);
}

}  // namespace zavhost
