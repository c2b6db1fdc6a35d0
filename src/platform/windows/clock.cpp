#include "platform/clock.h"

#include <windows.h>

namespace zavrel {

std::optional<std::tm> LocalTime(std::time_t time) {
  std::tm local;
  return localtime_s(&local, &time) == 0 ? std::optional(local) : std::nullopt;
}

std::uint32_t TickCountMilliseconds() { return static_cast<std::uint32_t>(GetTickCount64()); }

std::optional<std::int64_t> PerformanceCounter() {
  LARGE_INTEGER counter;
  if (!QueryPerformanceCounter(&counter)) return std::nullopt;
  return counter.QuadPart;
}

}  // namespace zavrel
