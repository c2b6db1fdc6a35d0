#include "platform/registry.h"

namespace zavrel {

std::optional<RegistryKey> RegistryKey::Open(RegistryHive, const std::u16string&) {
  return std::nullopt;
}

std::optional<RegistryKey> RegistryKey::Create(RegistryHive, const std::u16string&) {
  return std::nullopt;
}

RegistryKey::~RegistryKey() = default;

std::optional<std::u16string> RegistryKey::ReadText(const std::u16string&) const {
  return std::nullopt;
}

std::vector<RegistryText> RegistryKey::ReadTexts() const { return {}; }

bool RegistryKey::WriteNumber(const std::u16string&, std::uint32_t) { return false; }

}  // namespace zavrel
