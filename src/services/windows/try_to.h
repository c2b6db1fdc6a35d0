#pragma once

#include "platform/function_ref.h"

namespace zavrel::services {

/// A step of putting things back, after which the next one follows whatever happens: nobody could
/// be told.
inline void TryTo(FunctionRef<void()> step) noexcept {
  try {
    step();
  } catch (...) {
  }
}

}  // namespace zavrel::services
