// Compiled into every library: what its C++ library sets up only when it is first needed, and then
// needs memory for. Without memory, a library that had thrown nothing yet would end the process
// instead of throwing std::bad_alloc: the reserve for exceptions is guarded by a mutex that takes
// memory when it is first locked, and its failure is an exception again.
#include <atomic>
#include <cstddef>
#include <locale>

#include "platform/exhausted_memory.h"
#include "platform/thread_exceptions.h"

namespace {

std::atomic<bool> refuse_next{false};  // set while the loader's lock is held, so by one thread

void Throw() noexcept {
  try {
    throw 0;
  } catch (int) {  // thrown for what it leaves behind
  }
}

/// The lock of all local statics and the plain locale are set up by pthread_once, which writes to
/// a null pointer when it gets no memory.
void SetUpWhatIsDoneOnce() noexcept {
  [[maybe_unused]] static const bool initialised = !refuse_next.load();
  std::locale::classic();
}

/// The first throw sets up what the thread keeps of exceptions. The second finds no memory for the
/// exception, so it locks the mutex of the reserve, which does get memory. The reserve itself is
/// there, since constructors run from the C++ library's to those of its users.
[[gnu::constructor]] void SetUpExceptions() noexcept {
  zavrel::TakeOverNewHandler();
  if (!zavrel::SetUpThreadExceptions()) return;
  SetUpWhatIsDoneOnce();
  refuse_next = true;
  Throw();
}

}  // namespace

// The linker leads every call of malloc here (cmake/Shipped.cmake).
// NOLINTBEGIN(*-reserved-identifier,readability-identifier-naming): the linker's names.
extern "C" void* __real_malloc(std::size_t bytes);
extern "C" void* __wrap_malloc(std::size_t bytes) {
  // Only read as a rule, since threads that allocate at the same time share it.
  const bool refused = refuse_next.load(std::memory_order_relaxed) && refuse_next.exchange(false);
  return refused ? nullptr : __real_malloc(bytes);
}
// NOLINTEND(*-reserved-identifier,readability-identifier-naming)
