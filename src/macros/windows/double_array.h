#pragma once
// Arrays of doubles as macros pass them.

#include <cstddef>
#include <optional>

#include "macros/windows/ole_owners.h"

namespace zavrel {

/// The array at a place that a macro passed; null for a place or an array that cannot be read,
/// bounds included.
SAFEARRAY* ArrayAt(SAFEARRAY** place);

/// True for an array of 8-byte doubles, of whatever rank: only those are read and written as plain
/// memory.
bool HoldsDoubles(SAFEARRAY* array);

/// How many elements the bounds of the array promise; nothing when no memory holds so many.
std::optional<std::size_t> ElementCount(SAFEARRAY* array);

/// True when an array of doubles has memory for all that its bounds promise, or promises nothing.
bool HasItsElements(SAFEARRAY* array);

}  // namespace zavrel
