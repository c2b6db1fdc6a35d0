#include "platform/memory_status.h"

#include <windows.h>

namespace zavrel {

MemoryStatus ReadMemoryStatus() noexcept {
  MEMORYSTATUSEX status{};
  status.dwLength = sizeof status;
  if (!GlobalMemoryStatusEx(&status)) return {};
  return {status.dwMemoryLoad, status.ullTotalPhys, status.ullAvailPhys, status.ullTotalVirtual,
          status.ullAvailVirtual};
}

}  // namespace zavrel
