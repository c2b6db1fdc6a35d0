#include "macros/windows/double_array.h"

#include <limits>

#include "macros/windows/macro_memory.h"

namespace zavrel {

SAFEARRAY* ArrayAt(SAFEARRAY** place) {
  if (!IsReadableMemory(place, sizeof *place)) return nullptr;
  SAFEARRAY* const array = *place;
  if (!IsReadableMemory(array, offsetof(SAFEARRAY, rgsabound))) return nullptr;
  const std::size_t bounds = sizeof(SAFEARRAYBOUND) * array->cDims;
  return IsReadableMemory(array, offsetof(SAFEARRAY, rgsabound) + bounds) ? array : nullptr;
}

bool HoldsDoubles(SAFEARRAY* array) {
  VARTYPE type = VT_EMPTY;
  return array != nullptr && SUCCEEDED(SafeArrayGetVartype(array, &type)) && type == VT_R8 &&
         SafeArrayGetElemsize(array) == sizeof(double);
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
  return count && (*count == 0 || IsReadableMemory(array->pvData, *count * sizeof(double)));
}

}  // namespace zavrel
