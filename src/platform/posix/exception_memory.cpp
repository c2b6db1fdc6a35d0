// Compiled into every library: the memory that the system gives a library for each thread, what the
// thread keeps of exceptions in it. It is given when it is first used, and without memory the
// system ends the process then.

namespace {

[[gnu::constructor]] void SetUpExceptions() noexcept {
  try {
    throw 0;
  } catch (int) {  // thrown for what it leaves behind
  }
}

}  // namespace
