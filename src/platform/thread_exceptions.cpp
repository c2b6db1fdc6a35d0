#include "platform/thread_exceptions.h"

#include <cxxabi.h>

#include <cstddef>
#include <cstdlib>

#include "platform/exhausted_memory.h"

namespace zavrel {

bool SetUpThreadExceptions() noexcept {
  constexpr std::size_t kTaken = 4096;  // far more than it takes
  // Otherwise the compiler leaves the question out. NOLINTNEXTLINE(cppcoreguidelines-*): no object
  void* volatile room = std::malloc(kTaken);
  if (room == nullptr) {
    CallNewHandler();
    return false;
  }
  std::free(room);  // NOLINT(cppcoreguidelines-*)
  // Asked for what it leaves behind. Not by an exception, for which there may be no reserve yet.
  [[maybe_unused]] const void* volatile kept = abi::__cxa_get_globals();
  return true;
}

}  // namespace zavrel
