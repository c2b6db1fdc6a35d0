#pragma once
// The Windows registry. Elsewhere it is empty and cannot be written.

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace zavrel {

enum class RegistryHive { kPerUser, kMachineWide };

struct RegistryText {
  std::u16string name;
  std::u16string text;
};

/// Owner of one open key.
class RegistryKey {
 public:
  /// Opens an existing key for reading. `path` has backslashes between its parts and none in front.
  static std::optional<RegistryKey> Open(RegistryHive hive, const std::u16string& path);
  /// Opens a key for reading and writing, creating it and its parents when missing.
  static std::optional<RegistryKey> Create(RegistryHive hive, const std::u16string& path);

  RegistryKey(RegistryKey&& other) noexcept : key_(std::exchange(other.key_, nullptr)) {}
  RegistryKey& operator=(RegistryKey&& other) noexcept {
    std::swap(key_, other.key_);
    return *this;
  }
  ~RegistryKey();

  /// The text of a value; nothing when it is missing or of another type.
  std::optional<std::u16string> ReadText(const std::u16string& name) const;
  /// The values that are texts, with the names of environment variables in them as they stand.
  std::vector<RegistryText> ReadTexts() const;
  /// False when the system refuses.
  bool WriteNumber(const std::u16string& name, std::uint32_t number);

 private:
  explicit RegistryKey(void* key) : key_(key) {}

  void* key_;
};

}  // namespace zavrel
