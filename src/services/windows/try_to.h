#pragma once

#include "platform/function_ref.h"

namespace zavrel::services {

/// A step of putting things back, after which the next one follows whatever happens: nobody could
/// be told. It is tried twice, since what is left undone here stays.
inline void TryTo(FunctionRef<void()> step) noexcept {
  for (int attempt = 1; attempt <= 2; ++attempt) {
    try {
      step();
      return;
    } catch (...) {
    }
  }
}

}  // namespace zavrel::services
