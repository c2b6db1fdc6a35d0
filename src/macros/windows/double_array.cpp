#include "macros/windows/double_array.h"

#include <limits>

#include "macros/macro_memory.h"

namespace zavrel {
namespace {

/// The features of arrays whose elements own something.
constexpr USHORT kOwnsElements =
    FADF_BSTR | FADF_UNKNOWN | FADF_DISPATCH | FADF_VARIANT | FADF_RECORD;

}  // namespace

SAFEARRAY* ArrayAt(SAFEARRAY** place) {
  if (!IsReadableMemory(static_cast<const void*>(place), sizeof *place)) return nullptr;
  SAFEARRAY* const array = *place;
  if (!IsReadableMemory(array, offsetof(SAFEARRAY, rgsabound))) return nullptr;
  const std::size_t bounds = sizeof(SAFEARRAYBOUND) * array->cDims;
  return IsReadableMemory(array, offsetof(SAFEARRAY, rgsabound) + bounds) ? array : nullptr;
}

bool HoldsDoubles(SAFEARRAY* array) {
  if (array == nullptr || SafeArrayGetElemsize(array) != sizeof(double)) return false;
  constexpr USHORT kTyped = FADF_HAVEVARTYPE | FADF_HAVEIID | kOwnsElements;
  if ((array->fFeatures & kTyped) == 0) return true;
  VARTYPE type = VT_EMPTY;
  return SUCCEEDED(SafeArrayGetVartype(array, &type)) && type == VT_R8;
}

std::optional<std::size_t> ElementCount(SAFEARRAY* array) {
  constexpr std::size_t kMost = std::numeric_limits<std::ptrdiff_t>::max() / sizeof(double);
  for (UINT d = 0; d < array->cDims; ++d) {
    if (array->rgsabound[d].cElements == 0) return 0;
  }
  std::size_t count = 1;
  for (UINT d = 0; d < array->cDims; ++d) {
    const std::size_t elements = array->rgsabound[d].cElements;
    if (count > kMost / elements) return std::nullopt;
    count *= elements;
  }
  return count;
}

bool HasItsElements(SAFEARRAY* array) {
  const std::optional<std::size_t> count = ElementCount(array);
  if (!count || *count == 0) return count.has_value();
  constexpr std::size_t kMost = std::numeric_limits<std::ptrdiff_t>::max();
  return array->cbElements > 0 && *count <= kMost / array->cbElements &&
         IsReadableMemory(array->pvData, *count * array->cbElements);
}

bool CanBeDestroyed(SAFEARRAY* array) {
  return (array->fFeatures & kOwnsElements) == 0 || array->pvData == nullptr ||
         HasItsElements(array);
}

}  // namespace zavrel
