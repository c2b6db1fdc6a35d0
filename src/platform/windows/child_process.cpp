#include "platform/child_process.h"

#include <algorithm>

#include "platform/utf.h"
#include "platform/windows/system_handle.h"
#include "platform/windows/system_message.h"
#include "platform/windows/wide.h"

namespace zavrel {
namespace {

HANDLE HandleOf(std::intptr_t process) { return reinterpret_cast<HANDLE>(process); }

/// A file that a child inherits.
SystemHandle OpenForChild(const wchar_t* file, DWORD access, DWORD disposition) {
  SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
  return SystemHandle(CreateFileW(file, access, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherited,
                                  disposition, 0, nullptr));
}

/// The argument in quotes, as the C library of the child takes them apart again: a backslash stands
/// for itself unless a quote follows.
std::wstring Quoted(const std::string& argument) {
  std::wstring quoted = L"\"";
  std::size_t backslashes = 0;
  for (const wchar_t c : ToWide(Utf16FromUtf8(argument))) {
    if (c == L'"') quoted.append(backslashes + 1, L'\\');
    backslashes = c == L'\\' ? backslashes + 1 : 0;
    quoted += c;
  }
  quoted.append(backslashes, L'\\');
  return quoted + L'"';
}

/// The job of all children, which the system ends with this process. Never closed before.
HANDLE JobOfChildren() {
  static const HANDLE job = [] {
    const HANDLE made = CreateJobObjectW(nullptr, nullptr);
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
    limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
    SetInformationJobObject(made, JobObjectExtendedLimitInformation, &limits, sizeof limits);
    return made;
  }();
  return job;
}

}  // namespace

std::optional<ChildProcess> ChildProcess::Start(const ChildCommand& command, std::string* problem) {
  std::wstring line = L"\"" + command.program.wstring() + L"\"";
  for (const std::string& argument : command.arguments) line += L" " + Quoted(argument);
  // The files come last, since whoever deletes them may not be there if memory runs out before.
  const SystemHandle input = OpenForChild(L"NUL", GENERIC_READ, OPEN_EXISTING);
  const SystemHandle output = OpenForChild(command.output.c_str(), GENERIC_WRITE, CREATE_ALWAYS);
  const SystemHandle errors = OpenForChild(command.errors.c_str(), GENERIC_WRITE, CREATE_ALWAYS);
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESTDHANDLES;
  startup.hStdInput = input.get();
  startup.hStdOutput = output.get();
  startup.hStdError = errors.get();
  PROCESS_INFORMATION process{};
  if (!CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, CREATE_SUSPENDED, nullptr,
                      nullptr, &startup, &process)) {
    if (problem != nullptr) *problem = SystemMessage(GetLastError());
    return std::nullopt;
  }
  AssignProcessToJobObject(JobOfChildren(), process.hProcess);
  const SystemHandle thread(process.hThread);
  ResumeThread(thread.get());
  return ChildProcess(reinterpret_cast<std::intptr_t>(process.hProcess));
}

std::optional<int> ChildProcess::ExitCode() {
  if (WaitForSingleObject(HandleOf(process_), 0) == WAIT_TIMEOUT) return std::nullopt;
  const SystemHandle process(HandleOf(std::exchange(process_, 0)));
  DWORD code = 0;
  GetExitCodeProcess(process.get(), &code);
  return static_cast<int>(code);
}

void ChildProcess::Kill() noexcept {
  if (process_ == 0) return;
  const SystemHandle process(HandleOf(std::exchange(process_, 0)));
  TerminateProcess(process.get(), 1);
  WaitForSingleObject(process.get(), INFINITE);
}

bool LimitOwnMemory(std::uint64_t bytes) noexcept {
  const HANDLE job = CreateJobObjectW(nullptr, nullptr);
  if (job == nullptr) return false;
  JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
  limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_PROCESS_MEMORY;
  limits.ProcessMemoryLimit = bytes;
  // The job lives as long as the process, which holds its only handle.
  return SetInformationJobObject(job, JobObjectExtendedLimitInformation, &limits, sizeof limits) &&
         AssignProcessToJobObject(job, GetCurrentProcess());
}

void EndWithParent() noexcept {}

unsigned ProcessorCount() noexcept {
  DWORD_PTR own = 0;
  DWORD_PTR system = 0;
  if (!GetProcessAffinityMask(GetCurrentProcess(), &own, &system)) return 1;
  return std::max(1u, static_cast<unsigned>(__builtin_popcountll(own)));
}

}  // namespace zavrel
