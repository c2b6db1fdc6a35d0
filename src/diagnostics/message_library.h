#pragma once
// Message texts by number, in the language of the session.

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "diagnostics/vek_exception.h"

namespace zavrel {

inline constexpr std::uint32_t kEnglish = 9;  // primary language id

/// The message texts of the product.
class MessageLibrary {
 public:
  /// Finds a text in exactly this language; nothing, or an empty text, if it is missing.
  using Lookup =
      std::function<std::optional<std::u16string>(std::uint16_t language, std::uint16_t id)>;

  /// Without a lookup, every text is its fallback text.
  explicit MessageLibrary(Lookup lookup = {}) : lookup_(std::move(lookup)) {}

  /// Binds the product's texts, the library ZavrelMessages8_x64.DLL in the add-in's folder
  /// (LibraryFileName). If it is missing, this constructor logs it, and every text is its fallback
  /// text.
  static MessageLibrary Open(const std::filesystem::path& addin_folder);

  /// The text in this language (for an id with a sublanguage, first in the sublanguage, then in its
  /// primary language), otherwise in English. An unknown id gives the fallback text "Message 1234",
  /// which users can quote when they ask for help; kNoMessage gives the empty text.
  std::u16string Text(std::int32_t id, std::uint32_t language) const;

 private:
  std::optional<std::u16string> Find(std::uint16_t language, std::uint16_t id) const;

  Lookup lookup_;
};

/// Inserts the arguments into a text: {1} is the first, {2} the second and so on, and {{ is a
/// brace. A placeholder without an argument, and any other brace, stays unchanged. Arguments are
/// inserted literally. Numbers have a decimal point and no grouping, and as many digits as
/// distinguish the double from its neighbours.
std::u16string ComposeMessage(std::u16string_view text, const MessageArguments& arguments);

}  // namespace zavrel
