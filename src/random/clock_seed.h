#pragma once

#include <cstdint>
#include <functional>
#include <optional>

namespace zavrel {

/// The first 32 bits, low byte first, of the MD5 digest of the counter's 8 bytes or, without a
/// counter, of the 4 bytes of the milliseconds. Throws VekSecurityFunctionError if the system
/// provides no digest.
std::uint32_t HashOfReading(std::optional<std::int64_t> counter, std::uint32_t milliseconds);

/// The hash of the high-resolution counter or, if there is none, of the milliseconds since the
/// system started.
std::uint32_t HashOfClock();

/// A seed from the clock: its first hash that is not 0.
std::uint32_t ClockSeed(const std::function<std::uint32_t()>& hash = HashOfClock);

}  // namespace zavrel
