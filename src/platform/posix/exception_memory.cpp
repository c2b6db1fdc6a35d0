// Compiled into every library: the memory that the system gives a library for each thread, what the
// thread keeps of exceptions in it. It is given when it is first used, and without memory the
// system ends the process then.
#include "platform/exhausted_memory.h"
#include "platform/thread_exceptions.h"

namespace {

[[gnu::constructor]] void SetUpExceptions() noexcept {
  zavrel::TakeOverNewHandler();
  zavrel::SetUpThreadExceptions();
}

}  // namespace
