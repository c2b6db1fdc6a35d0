#pragma once
// What lies at an address that came from a macro.

#include <cstddef>
#include <cstdint>

namespace zavrel {

/// True when all of these bytes are memory that can be read; guard pages do not count.
bool IsReadableMemory(const void* address, std::size_t size);
/// True when they can be written as well.
bool IsWritableMemory(const void* address, std::size_t size);

/// True when a macro passed a place that takes a result: the rule for every pointer through which
/// one is written.
template <class Result>
bool IsPlaceFor(const Result* place) {
  return IsWritableMemory(place, sizeof(Result));
}

}  // namespace zavrel
