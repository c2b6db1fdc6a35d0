#pragma once

#include <windows.h>

#include "platform/exhausted_memory.h"

namespace zavrel {

/// For a call that failed with this error: throws std::bad_alloc if there was no memory for it.
inline void ThrowIfNoMemory(DWORD error) {
  if (error == ERROR_NOT_ENOUGH_MEMORY || error == ERROR_OUTOFMEMORY ||
      error == ERROR_COMMITMENT_LIMIT)
    ThrowBadAlloc();
}

}  // namespace zavrel
