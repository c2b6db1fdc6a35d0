#pragma once
// Statuses that entry points return to macros.

#include <cstdint>

namespace zavrel {

/// What entry points return whose result is no ordinary number, or that were given nothing they
/// could read or write.
inline constexpr std::int16_t kNoNumberStatus = -11005;

}  // namespace zavrel
