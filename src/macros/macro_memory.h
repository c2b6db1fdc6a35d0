#pragma once
// Checks of the memory at an address that came from a macro.

#include <cstddef>
#include <cstdint>

namespace zavrel {

/// True when all of these bytes are readable memory; guard pages do not count.
bool IsReadableMemory(const void* address, std::size_t size);
/// True when they are also writable.
bool IsWritableMemory(const void* address, std::size_t size);

/// True when a result can be written to a place that a macro passed. Every pointer for a result
/// must be checked so.
template <class Result>
bool IsPlaceFor(const Result* place) {
  // NOLINTNEXTLINE(bugprone-sizeof-expression): the result may itself be a pointer.
  return IsWritableMemory(static_cast<const void*>(place), sizeof(Result));
}

}  // namespace zavrel
