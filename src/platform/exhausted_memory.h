#pragma once
// Memory that is exhausted where something other than operator new asks for it.

#include <system_error>

namespace zavrel {

/// For the loading of a library: takes over the program's new-handler, if the program has one for
/// the libraries that it loads.
void TakeOverNewHandler() noexcept;

/// As operator new without memory: calls the new-handler, if there is one.
void CallNewHandler();
/// The same, and throws std::bad_alloc.
[[noreturn]] void ThrowBadAlloc();
/// The same if errno, which was 0 before the call that failed, says that there was no memory for
/// it.
void ThrowIfNoMemory();
/// The same if the error says so.
void ThrowIfNoMemory(const std::error_code& error);

}  // namespace zavrel
