#include "host/capi/crash_guard.h"

namespace zavhost {

// The host ships only for Windows. On other systems it runs in tests, whose sanitizers report
// crashes in full.
void GuardAgainstCrashes(const Judge&) {}
void EndCrashGuard(const Judge&) {}

}  // namespace zavhost
