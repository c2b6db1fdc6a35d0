#include "diagnostics/message_library.h"

#include <algorithm>
#include <tuple>

#include "contracts/message_table.h"

namespace zavrel {
namespace {

std::optional<std::u16string> FindInTable(std::uint16_t language, std::uint16_t id) {
  const auto key = std::tuple<std::uint32_t, std::uint32_t>(language, id);
  const auto key_of = [](const messages::Message& message) {
    return std::tuple<std::uint32_t, std::uint32_t>(message.language, message.id);
  };
  const auto table = messages::Messages();
  const auto found = std::ranges::lower_bound(table, key, {}, key_of);
  if (found == table.end() || key_of(*found) != key) return std::nullopt;
  return std::u16string(found->text);
}

}  // namespace

MessageLibrary MessageLibrary::Open(const std::filesystem::path&) {
  return MessageLibrary(FindInTable);
}

}  // namespace zavrel
