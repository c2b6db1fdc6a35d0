#pragma once
// The report when the add-in crashes the process.

#include "host/capi/judge.h"

namespace zavhost {

/// The exit code of a process that the add-in crashed.
inline constexpr int kCrashExitCode = 3;

/// From now on, a crash (an access violation, a stack overflow, an abort) writes one line with the
/// judge's current formula and cell to stderr and ends the process with kCrashExitCode. Does
/// nothing in a build with sanitizers, which report crashes better.
void GuardAgainstCrashes(const Judge& judge);
/// Removes the guard if it belongs to this judge.
void EndCrashGuard(const Judge& judge);

}  // namespace zavhost
