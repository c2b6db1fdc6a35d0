#pragma once
// The clocks of the system.

#include <cstdint>
#include <ctime>
#include <optional>
#include <string>

namespace zavrel {

/// The current local time in the C library's asctime form, "Tue Nov 24 21:52:37 2026", without a
/// newline; empty if the system does not provide it.
std::string LocalTimeText();

/// Local calendar time; nothing if the system does not provide it.
std::optional<std::tm> LocalTime(std::time_t time);

/// Seconds since 1970-01-01 00:00 UTC.
std::int64_t CalendarSeconds();

/// Milliseconds since the system started, modulo 2^32.
std::uint32_t TickCountMilliseconds();

/// The high-resolution counter, in its own units; nothing if the machine has none.
std::optional<std::int64_t> PerformanceCounter();

}  // namespace zavrel
