#pragma once
// Texts by language and number in a library: string tables in its resources on Windows, a table
// that it exports elsewhere (contracts/message_table.h).

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace zavrel {

/// Owner of a library that is loaded only for its texts.
class StringResources {
 public:
  /// Nothing if the path is not absolute, or the file is missing or not such a library.
  static std::optional<StringResources> Load(const std::filesystem::path& full_path);

  StringResources(StringResources&& other) noexcept
      : library_(std::exchange(other.library_, nullptr)) {}
  StringResources& operator=(StringResources&& other) noexcept {
    std::swap(library_, other.library_);
    return *this;
  }
  ~StringResources();

  /// The text in this language. For a sublanguage, the system may return the text of its primary
  /// language, but of no other. An empty text counts as missing, since string tables do not
  /// distinguish the two.
  std::optional<std::u16string> Find(std::uint16_t language, std::uint16_t id) const;
  /// The languages that have this text or another text of the same table.
  std::vector<std::uint16_t> LanguagesOf(std::uint16_t id) const;

 private:
  explicit StringResources(void* library) : library_(library) {}

  void* library_;
};

}  // namespace zavrel
