#pragma once
// What is said when the add-in brings the process down.

#include "host/capi/judge.h"

namespace zavhost {

/// The exit code of a process that the add-in brought down.
inline constexpr int kCrashExitCode = 3;

/// From now on a crash (an access violation, a stack overflow, an abort) writes one line with the
/// judge's present formula and cell on stderr and ends the process with kCrashExitCode. Does
/// nothing where sanitizers or the system's own reports serve better.
void GuardAgainstCrashes(const Judge& judge);
/// Takes the guard away if it is this judge's.
void EndCrashGuard(const Judge& judge);

}  // namespace zavhost
