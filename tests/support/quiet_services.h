#pragma once

#include <string>

#include "frame/session.h"
#include "platform/utf.h"

namespace zavrel::tests {

/// Surroundings of a session that reach nothing outside the test: an empty registry, so much memory
/// in use that data sets are pruned, and texts like "9:1114" for English (9) and German (7).
inline SessionServices QuietServices() {
  const auto text = [](std::uint16_t language, std::uint16_t id) -> std::optional<std::u16string> {
    if (language != 9 && language != 7) return std::nullopt;
    return Utf16FromUtf8(std::to_string(language) + ':' + std::to_string(id) + " {1}");
  };
  return {.messages = [=] { return MessageLibrary(text); },
          .memory_load = [] { return 60u; },
          .machine_text = [](const auto&, const auto&) { return std::nullopt; },
          .write_user_number = [](const auto&, const auto&, std::uint32_t) {}};
}

}  // namespace zavrel::tests
