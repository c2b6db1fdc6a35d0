#pragma once
// The memory of the loaded libraries, which a test has run out. Whatever a library asks for is
// counted, also by the C++ library in it; the fake host's own requests are not.

#include <cstdint>

#include "platform/module.h"

namespace zavrel::tests {

class LibraryMemory {
 public:
  /// Has a library ask here. To be called for every library that is to be watched.
  static void Watch(const LoadedModule& library);

  enum class Shortage { kOneRequest, kLasting, kEverywhere, kOtherThreads };
  /// After `granted` more requests of this thread one fails, or all of its own do, or those of all
  /// threads. Or those of all other threads fail, and this one's do not.
  static void RunOut(std::int64_t granted, Shortage shortage);
  /// There is memory again. Whether a request has failed.
  static bool Return();

  /// Whether this request is granted.
  static bool Grants() noexcept;
};

}  // namespace zavrel::tests
