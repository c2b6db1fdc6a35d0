#pragma once
// Statuses that entry points return to macros.

#include <cstdint>

namespace zavrel {

/// Returned by entry points whose result is not an ordinary number, or whose arguments cannot be
/// read or written.
inline constexpr std::int16_t kNoNumberStatus = -11005;

}  // namespace zavrel
