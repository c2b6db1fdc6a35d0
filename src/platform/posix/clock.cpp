#include "platform/clock.h"

#include <chrono>

namespace zavrel {
namespace {

template <typename Unit>
std::int64_t SinceStart() {
  return std::chrono::duration_cast<Unit>(std::chrono::steady_clock::now().time_since_epoch())
      .count();
}

}  // namespace

std::uint32_t TickCountMilliseconds() {
  return static_cast<std::uint32_t>(SinceStart<std::chrono::milliseconds>());
}

std::optional<std::int64_t> PerformanceCounter() { return SinceStart<std::chrono::nanoseconds>(); }

}  // namespace zavrel
