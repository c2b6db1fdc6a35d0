#include "platform/registry.h"

namespace zavrel {
std::optional<RegistryKey> RegistryKey::Open(RegistryHive, const std::u16string&, std::string*) {
  return std::nullopt;
}

std::optional<RegistryKey> RegistryKey::Create(RegistryHive, const std::u16string&, std::string*) {
  return std::nullopt;
}

// Without a registry, there is no key for what follows.
RegistryKey::~RegistryKey() = default;

std::optional<std::u16string> RegistryKey::ReadText(const std::u16string&) const {
  return std::nullopt;
}

std::optional<std::uint32_t> RegistryKey::ReadNumber(const std::u16string&) const {
  return std::nullopt;
}

std::vector<RegistryText> RegistryKey::ReadTexts() const { return {}; }

bool RegistryKey::WriteText(const std::u16string&, const std::u16string&, std::string*) {
  return false;
}

bool RegistryKey::WriteNumber(const std::u16string&, std::uint32_t, std::string*) { return false; }

bool RegistryKey::DeleteValue(const std::u16string&, std::string*) { return false; }

}  // namespace zavrel
