#include "macros/windows/vb_numbers.h"

#include <algorithm>
#include <new>

#include "macros/windows/double_array.h"

namespace zavrel {
namespace {

/// The array if it is a one-dimensional array of doubles, else null.
SAFEARRAY* DoublesOrNull(SAFEARRAY** place) {
  SAFEARRAY* const array = ArrayAt(place);
  const bool fits = array != nullptr && array->cDims == 1 && HoldsDoubles(array);
  return fits && HasItsElements(array) ? array : nullptr;
}

}  // namespace

VbNumbers::VbNumbers(SAFEARRAY** array) : lock_(DoublesOrNull(array)) {
  if (lock_.ok()) numbers_.emplace(lock_.data(), lock_.array().rgsabound[0].cElements);
}

std::unique_ptr<double[]> TryAllocate(std::size_t count) {
  return std::unique_ptr<double[]>(new (std::nothrow) double[count]);
}

std::unique_ptr<double[]> TryCopy(std::span<const double> numbers) {
  std::unique_ptr<double[]> copy = TryAllocate(numbers.size());
  if (copy != nullptr) std::copy(numbers.begin(), numbers.end(), copy.get());
  return copy;
}

}  // namespace zavrel
