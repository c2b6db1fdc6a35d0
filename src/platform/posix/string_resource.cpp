#include "platform/string_resource.h"

namespace zavrel {

std::optional<StringResources> StringResources::Load(const std::filesystem::path&) {
  return std::nullopt;
}

StringResources::~StringResources() = default;

std::optional<std::u16string> StringResources::Find(std::uint16_t, std::uint16_t) const {
  return std::nullopt;
}

std::vector<std::uint16_t> StringResources::LanguagesOf(std::uint16_t) const { return {}; }

}  // namespace zavrel
