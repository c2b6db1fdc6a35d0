#include "platform/thread_exceptions.h"

#include <cstdlib>

namespace zavrel {

bool SetUpThreadExceptions() noexcept {
  constexpr std::size_t kTaken = 4096;  // far more than the first exception takes
  // Otherwise the compiler leaves the question out. NOLINTNEXTLINE(cppcoreguidelines-*): no object
  void* volatile room = std::malloc(kTaken);
  if (room == nullptr) return false;
  std::free(room);  // NOLINT(cppcoreguidelines-*)
  ThrowOnce();
  return true;
}

}  // namespace zavrel
