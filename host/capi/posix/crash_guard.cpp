#include "host/capi/crash_guard.h"

#include <signal.h>
#include <unistd.h>

#include <array>
#include <cstddef>

#include "host/capi/crash_line.h"

namespace zavhost {

#ifdef __SANITIZE_ADDRESS__

void GuardAgainstCrashes(const Judge&) {}
void EndCrashGuard(const Judge&) {}

#else

namespace {

const Judge* guarded_judge = nullptr;

// Of the main thread, which alone calls the add-in. A stack overflow leaves no other.
alignas(16) std::array<std::byte, 64 << 10> stack_of_handler;

void AddCause(CrashLine& line, const siginfo_t& signal) {
  switch (signal.si_signo) {
    case SIGSEGV:
    case SIGBUS:
      line.Add("accessing address ");
      line.AddAddress(reinterpret_cast<std::uintptr_t>(signal.si_addr));
      break;
    case SIGFPE:
      line.Add(signal.si_code == FPE_INTDIV ? "integer division by zero" : "arithmetic fault");
      break;
    case SIGILL:
      line.Add("illegal instruction");
      break;
    default:
      line.Add("abort");
      break;
  }
}

void OnCrash(int, siginfo_t* signal, void*) {
  if (guarded_judge != nullptr) {
    CrashLine line(*guarded_judge->place());
    AddCause(line, *signal);
    const std::string_view text = line.End();
    // Nothing is left to do if stderr is closed.
    [[maybe_unused]] const auto written = write(STDERR_FILENO, text.data(), text.size());
  }
  _exit(kCrashExitCode);
}

constexpr std::array kCrashes{SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT};

}  // namespace

void EndCrashGuard(const Judge& judge) {
  if (guarded_judge != &judge) return;
  guarded_judge = nullptr;
  for (const int crash : kCrashes) signal(crash, SIG_DFL);
}

void GuardAgainstCrashes(const Judge& judge) {
  guarded_judge = &judge;
  const stack_t stack{
      .ss_sp = stack_of_handler.data(), .ss_flags = 0, .ss_size = stack_of_handler.size()};
  sigaltstack(&stack, nullptr);
  struct sigaction action {};
  action.sa_sigaction = OnCrash;
  action.sa_flags = SA_SIGINFO | SA_ONSTACK;
  for (const int crash : kCrashes) sigaction(crash, &action, nullptr);
}

#endif

}  // namespace zavhost
