#pragma once

#include <cstddef>

namespace zavrel {

/// Calls work(context) on this thread and, as soon as they wake, on up to `others` standing threads
/// too. Returns when every call that began has ended; a call that did not begin before this
/// thread's own had ended never will. One caller at a time.
void CallOnStandingThreads(std::size_t others, void (*work)(void* context), void* context) noexcept;

}  // namespace zavrel
