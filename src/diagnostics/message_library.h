#pragma once
// Texts by number, in the language of the session.

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

/// The texts of the product.
class MessageLibrary {
 public:
  /// Finds a text in exactly this language; nothing, or an empty text, when it is missing.
  using Lookup =
      std::function<std::optional<std::u16string>(std::uint16_t language, std::uint16_t id)>;

  /// Without a lookup, every text is its fallback text.
  explicit MessageLibrary(Lookup lookup = {}) : lookup_(std::move(lookup)) {}

  /// Binds the texts that come with the product: on Windows the library ZavrelMessages8_x64.DLL in
  /// the add-in's folder, elsewhere the table that is linked in. A missing library is told to the
  /// log once, here; every text is its fallback text then.
  static MessageLibrary Open(const std::filesystem::path& addin_folder);

  /// The text in this language (of an id with a sublanguage first that very one, then its primary
  /// language), else in English. An id that is in neither gives the fallback text "Message 1234",
  /// which a user can read out to whoever helps; kNoMessage gives the empty text.
  std::u16string Text(std::int32_t id, std::uint32_t language) const;

 private:
  std::optional<std::u16string> Find(std::uint16_t language, std::uint16_t id) const;

  Lookup lookup_;
};

/// Inserts the arguments into a text: {1} stands for the first, {2} for the second and so on, and
/// {{ for a brace. A placeholder that has no argument, and any other brace, stays as it is written.
/// Arguments are inserted as they are; numbers have no grouping and a point before the decimals,
/// with as many digits as tell the double from its neighbours.
std::u16string ComposeMessage(std::u16string_view text, const MessageArguments& arguments);

}  // namespace zavrel
