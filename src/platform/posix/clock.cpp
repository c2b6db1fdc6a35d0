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

std::optional<std::tm> LocalTime(std::time_t time) {
  std::tm local;
  return localtime_r(&time, &local) != nullptr ? std::optional(local) : std::nullopt;
}

std::uint32_t TickCountMilliseconds() {
  return static_cast<std::uint32_t>(SinceStart<std::chrono::milliseconds>());
}

std::optional<std::int64_t> PerformanceCounter() { return SinceStart<std::chrono::nanoseconds>(); }

}  // namespace zavrel
