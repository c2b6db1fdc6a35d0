#pragma once
// Formatted lines for the session's log. Apart from log.h, so that only code that formats pays for
// the formatting library's headers.

#include <fmt/format.h>

#include <utility>

#include "diagnostics/log.h"

namespace zavrel {

/// Appends one formatted text to the session's log when it is enabled; the format brings its own
/// "\n". Wide text and paths go through Utf8FromUtf16 and Utf8FromPath, which a caller on a hot
/// path does only after asking EnabledLog().
template <typename... Arguments>
void LogLine(fmt::format_string<Arguments...> format, Arguments&&... arguments) noexcept {
  LogFile* log = EnabledLog();
  if (log == nullptr) return;
  try {
    log->Write(fmt::format(format, std::forward<Arguments>(arguments)...));
  } catch (...) {  // a log never disturbs what it logs
  }
}

}  // namespace zavrel
