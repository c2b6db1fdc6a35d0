#pragma once
// The texts of the message library on systems that have no resources: a library there exports them
// as a table. Made from the files of companions/messages/texts.

#include <cstddef>
#include <cstdint>

namespace zavrel::messages {

struct Message {
  std::uint32_t language;  // primary language id
  std::uint32_t id;
  const char16_t* text;
};

/// All texts, ordered by language, then id.
struct MessageTable {
  const Message* messages;
  std::size_t count;
};

/// The library's only export.
extern "C" const MessageTable* ZavrelMessageTable();

}  // namespace zavrel::messages
