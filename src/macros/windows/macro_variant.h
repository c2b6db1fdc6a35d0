#pragma once
// The VARIANTs that a macro passes to an entry point. It declares them ByRef, or by value, which
// looks the same from here: the address of a VARIANT arrives.

#include <cstdint>

#include "macros/windows/ole_owners.h"

namespace zavrel {

/// The VARIANT itself: one that a macro passes by reference (VT_BYREF | VT_VARIANT) is followed
/// once. Null for an address without a VARIANT.
const VARIANT* FollowReference(const VARIANT* variant);

/// A copy of what the VARIANT, followed, holds or refers to; nothing when it holds nothing that can
/// be copied.
std::optional<OwnedVariant> CopyOf(const VARIANT* variant);

/// The address under which a worksheet call can write to the macro's VARIANT later; 0 when there is
/// none that lasts. A reference to anything but a VARIANT is made for this one call.
std::uint64_t LastingAddress(const VARIANT* variant);

}  // namespace zavrel
