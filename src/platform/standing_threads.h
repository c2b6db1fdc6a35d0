#pragma once

#include <cstddef>

namespace zavrel {

/// Calls work(context) on this thread and on up to `others` waiting threads as soon as they wake,
/// but on none that has no memory for exceptions.
/// Returns when every call that began has ended; no call begins after the call on this thread has
/// ended. Only one caller at a time.
void CallOnStandingThreads(std::size_t others, void (*work)(void* context), void* context) noexcept;

}  // namespace zavrel
