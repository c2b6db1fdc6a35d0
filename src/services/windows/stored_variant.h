#pragma once

#include "platform/windows/ole_owners.h"
#include "services/stored_items.h"

namespace zavrel::services {

/// What a macro's VARIANT holds: a text, a number, a two-dimensional array of doubles, or an array
/// of bytes. Throws VekInvalidDataType for anything else.
StoredItem ItemIn(const VARIANT* variant);

/// Puts the item into a macro's VARIANT in place of what it holds, or makes it empty if there is no
/// item. Throws VekInvalidDataType if there is no VARIANT at the address.
void StoreItem(const std::optional<StoredItem>& item, VARIANT* variant);

}  // namespace zavrel::services
