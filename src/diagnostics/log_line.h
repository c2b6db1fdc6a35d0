#pragma once
// Formatted lines for the session's log. Separate from log.h, so that only code that formats
// includes the formatting library's headers.

#include <fmt/format.h>

#include <utility>

#include "diagnostics/log.h"

namespace zavrel {

/// Appends one formatted text to the session's log if it is enabled; the format has its own "\n".
/// Callers convert wide text and paths with Utf8FromUtf16 and Utf8FromPath, on hot paths only after
/// checking EnabledLog().
template <typename... Arguments>
void LogLine(fmt::format_string<Arguments...> format, Arguments&&... arguments) noexcept {
  LogFile* log = EnabledLog();
  if (log == nullptr) return;
  try {
    log->Write(fmt::format(format, std::forward<Arguments>(arguments)...));
  } catch (...) {  // logging must never disturb the logged operation
  }
}

}  // namespace zavrel
