#include "platform/string_resource.h"

#include <algorithm>
#include <span>
#include <tuple>

#include "contracts/message_table.h"
#include "platform/module.h"

namespace zavrel {
namespace {

using messages::Message;
using messages::MessageTable;

/// A library of texts has code on systems without resources: the one function that returns them.
struct TextLibrary {
  Module module;
  std::span<const Message> table;
};

std::span<const Message> TableIn(void* library) {
  return static_cast<const TextLibrary*>(library)->table;
}

}  // namespace

std::optional<StringResources> StringResources::Load(const std::filesystem::path& full_path) {
  auto module = Module::Load(full_path);
  const ExportAddress found = module ? module->FindExport("ZavrelMessageTable") : nullptr;
  if (found == nullptr) return std::nullopt;
  const MessageTable& table = *AsFunction<const MessageTable*()>(found)();
  return StringResources(new TextLibrary{std::move(*module), {table.messages, table.count}});
}

StringResources::~StringResources() { delete static_cast<TextLibrary*>(library_); }

std::optional<std::u16string> StringResources::Find(std::uint16_t language,
                                                    std::uint16_t id) const {
  const std::tuple<std::uint32_t, std::uint32_t> key(language, id);
  const auto key_of = [](const Message& message) {
    return std::tuple(message.language, message.id);
  };
  const auto table = TableIn(library_);
  const auto found = std::ranges::lower_bound(table, key, {}, key_of);
  if (found == table.end() || key_of(*found) != key) return std::nullopt;
  return std::u16string(found->text);
}

std::vector<std::uint16_t> StringResources::LanguagesOf(std::uint16_t id) const {
  std::vector<std::uint16_t> languages;
  for (const Message& message : TableIn(library_)) {
    if (message.id == id) languages.push_back(static_cast<std::uint16_t>(message.language));
  }
  return languages;
}

}  // namespace zavrel
