#include "macros/windows/macro_variant.h"

#include "macros/windows/macro_memory.h"

namespace zavrel {
namespace {

const VARIANT* OrNull(const VARIANT* variant) {
  return IsReadableMemory(variant, sizeof(VARIANT)) ? variant : nullptr;
}

bool IsReference(const VARIANT& variant) { return (variant.vt & VT_BYREF) != 0; }

}  // namespace

const VARIANT* FollowReference(const VARIANT* variant) {
  const VARIANT* own = OrNull(variant);
  const bool refers = own != nullptr && own->vt == (VT_BYREF | VT_VARIANT);
  return refers && own->pvarVal != nullptr ? OrNull(own->pvarVal) : own;
}

std::optional<OwnedVariant> CopyOf(const VARIANT* variant) {
  const VARIANT* own = FollowReference(variant);
  // The system's function follows a reference to any address.
  if (own == nullptr || (IsReference(*own) && !IsReadableMemory(own->byref, sizeof(LONGLONG))))
    return std::nullopt;
  OwnedVariant copy;
  if (FAILED(VariantCopyInd(copy.address(), Unconst(*own)))) return std::nullopt;
  return copy;
}

std::uint64_t LastingAddress(const VARIANT* variant) {
  const VARIANT* own = FollowReference(variant);
  return own == nullptr || IsReference(*own) ? 0 : reinterpret_cast<std::uint64_t>(own);
}

}  // namespace zavrel
