#include "macros/windows/macro_variant.h"

#include "macros/macro_memory.h"
#include "macros/windows/double_array.h"

namespace zavrel {
namespace {

const VARIANT* OrNull(const VARIANT* variant) {
  return IsReadableMemory(variant, sizeof(VARIANT)) ? variant : nullptr;
}

bool IsReference(const VARIANT& variant) { return (variant.vt & VT_BYREF) != 0; }

/// Whether the system's function, which follows a reference and an array to any address, finds
/// them.
bool CanBeCopied(const VARIANT& variant) {
  const bool refers = IsReference(variant);
  if (variant.vt == (VT_BYREF | VT_VARIANT)) return false;
  if (refers && !IsReadableMemory(variant.byref, sizeof(LONGLONG))) return false;
  if ((variant.vt & VT_ARRAY) == 0) return true;
  VARIANT own = variant;
  SAFEARRAY* const array = ArrayAt(refers ? own.pparray : &own.parray);
  return array != nullptr && HasItsElements(array);
}

}  // namespace

const VARIANT* FollowReference(const VARIANT* variant) {
  const VARIANT* own = OrNull(variant);
  const bool refers = own != nullptr && own->vt == (VT_BYREF | VT_VARIANT);
  return refers && own->pvarVal != nullptr ? OrNull(own->pvarVal) : own;
}

std::optional<OwnedVariant> CopyOf(const VARIANT* variant) {
  const VARIANT* own = FollowReference(variant);
  if (own == nullptr || !CanBeCopied(*own)) return std::nullopt;
  OwnedVariant copy;
  if (FAILED(VariantCopyInd(copy.address(), Unconst(*own)))) return std::nullopt;
  return copy;
}

std::uint64_t LastingAddress(const VARIANT* variant) {
  const VARIANT* own = FollowReference(variant);
  return own == nullptr || IsReference(*own) ? 0 : reinterpret_cast<std::uint64_t>(own);
}

}  // namespace zavrel
