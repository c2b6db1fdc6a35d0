#include "host/capi/crash_guard.h"

namespace zavhost {

// The host ships for Windows; elsewhere it runs in tests, whose sanitizers report a crash in full.
void GuardAgainstCrashes(const Judge&) {}
void EndCrashGuard(const Judge&) {}

}  // namespace zavhost
