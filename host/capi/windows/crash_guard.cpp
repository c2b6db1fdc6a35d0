#include <windows.h>

#include <csignal>
#include <string_view>

#include "host/capi/crash_guard.h"
#include "host/capi/crash_line.h"

namespace zavhost {
namespace {

const Judge* guarded_judge = nullptr;

void AddCause(CrashLine& line, const EXCEPTION_RECORD& exception) {
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

void Write(std::string_view line) {
  DWORD written = 0;
  WriteFile(GetStdHandle(STD_ERROR_HANDLE), line.data(), static_cast<DWORD>(line.size()), &written,
            nullptr);
}

LONG WINAPI OnUnhandledException(EXCEPTION_POINTERS* pointers) {
  if (guarded_judge == nullptr) return EXCEPTION_CONTINUE_SEARCH;
  CrashLine line(*guarded_judge->place());
  AddCause(line, *pointers->ExceptionRecord);
  Write(line.End());
  TerminateProcess(GetCurrentProcess(), static_cast<UINT>(kCrashExitCode));
  return EXCEPTION_EXECUTE_HANDLER;
}

void OnAbort(int) {
  if (guarded_judge != nullptr) {
    CrashLine line(*guarded_judge->place());
    line.Add("abort");
    Write(line.End());
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
