#pragma once
// The Windows registry. On other systems it is empty and read-only.

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
  /// Opens an existing key for reading. `path` has backslashes between its parts but not at its
  /// start. Nothing if the system refuses; `problem` receives the message of a registry, here and
  /// below.
  static std::optional<RegistryKey> Open(RegistryHive hive, const std::u16string& path,
                                         std::string* problem = nullptr);
  /// Opens a key for reading and writing; creates it and its parents if they are missing.
  static std::optional<RegistryKey> Create(RegistryHive hive, const std::u16string& path,
                                           std::string* problem = nullptr);

  RegistryKey(RegistryKey&& other) noexcept : key_(std::exchange(other.key_, nullptr)) {}
  RegistryKey& operator=(RegistryKey&& other) noexcept {
    std::swap(key_, other.key_);
    return *this;
  }
  // NOLINTNEXTLINE(performance-trivially-destructible): only where there is no registry
  ~RegistryKey();

  /// The text or number of a value; nothing if it is missing or has another type.
  std::optional<std::u16string> ReadText(const std::u16string& name) const;
  std::optional<std::uint32_t> ReadNumber(const std::u16string& name) const;
  /// All text values; names of environment variables in them are not expanded.
  std::vector<RegistryText> ReadTexts() const;

  /// Writes the value, whatever it was before. False if the system refuses.
  bool WriteText(const std::u16string& name, const std::u16string& text,
                 std::string* problem = nullptr);
  bool WriteNumber(const std::u16string& name, std::uint32_t number,
                   std::string* problem = nullptr);
  /// Deletes the value. True if there is none.
  bool DeleteValue(const std::u16string& name, std::string* problem = nullptr);

 private:
  explicit RegistryKey(void* key) : key_(key) {}

  void* key_;
};

}  // namespace zavrel
