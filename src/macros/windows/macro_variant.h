#pragma once
// The VARIANTs that a macro passes to an entry point. Declared ByRef or by value, they arrive in
// the same way: as the address of a VARIANT.

#include <cstdint>

#include "platform/windows/ole_owners.h"

namespace zavrel {

/// The VARIANT itself: a reference to one (VT_BYREF | VT_VARIANT) is followed once. Null for an
/// address without a VARIANT.
const VARIANT* FollowReference(const VARIANT* variant);

/// A copy of the contents of the VARIANT, with references followed; std::nullopt if they cannot be
/// copied.
std::optional<OwnedVariant> CopyOf(const VARIANT* variant);

/// The address at which a later worksheet call can write to the macro's VARIANT; 0 if the VARIANT
/// does not last. A VARIANT that refers to anything but a VARIANT exists only for this call.
std::uint64_t LastingAddress(const VARIANT* variant);

}  // namespace zavrel
