#pragma once

namespace zavrel {

/// For the beginning of a new thread that may have to catch exceptions. What a thread keeps of them
/// takes memory at its first one, and without memory the process would end there. False if there
/// is no memory now: the thread has to do without its work.
bool SetUpThreadExceptions() noexcept;

}  // namespace zavrel
