#pragma once
// Arrays of doubles as macros pass them.

#include <cstddef>
#include <optional>

#include "platform/windows/ole_owners.h"

namespace zavrel {

/// The array at a place that a macro passed; null if the place, the array or its bounds cannot be
/// read.
SAFEARRAY* ArrayAt(SAFEARRAY** place);

/// True for an array of 8-byte doubles of any rank: only these are read and written as plain
/// memory. Elements of 8 bytes whose type the array does not note count as doubles.
bool HoldsDoubles(SAFEARRAY* array);

/// The number of elements according to the array's bounds; std::nullopt if memory cannot hold so
/// many.
std::optional<std::size_t> ElementCount(SAFEARRAY* array);

/// True when an array has readable memory for all elements of its bounds, or no elements.
bool HasItsElements(SAFEARRAY* array);

/// True when the system finds the elements that it releases with the array, if any.
bool CanBeDestroyed(SAFEARRAY* array);

}  // namespace zavrel
