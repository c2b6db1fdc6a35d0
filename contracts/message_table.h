#pragma once
// The texts of the message library as a table for programs that are not built for Windows, where
// they come from the resource DLL instead. Generated from the files in texts/.

#include <cstdint>
#include <span>
#include <string_view>

namespace zavrel::messages {

struct Message {
  std::uint32_t language;  // primary language id
  std::uint32_t id;
  std::u16string_view text;
};

/// All texts, ordered by language, then id.
std::span<const Message> Messages();

}  // namespace zavrel::messages
