#include "diagnostics/message_library.h"

#include <charconv>
#include <memory>

#include "diagnostics/log.h"
#include "platform/library_identity.h"
#include "platform/module.h"
#include "platform/string_resource.h"
#include "platform/utf.h"

namespace zavrel {
namespace {

template <typename Number>
std::u16string NumberText(Number number) {
  char digits[32];  // the longest double in its shortest form has 24
  const auto end = std::to_chars(digits, digits + sizeof digits, number).ptr;
  return Utf16FromUtf8({digits, static_cast<std::size_t>(end - digits)});
}

std::u16string ArgumentText(const MessageArgument& argument) {
  if (const auto* text = std::get_if<std::u16string>(&argument)) return *text;
  if (const auto* integer = std::get_if<std::int64_t>(&argument)) return NumberText(*integer);
  return NumberText(std::get<double>(argument));
}

struct Placeholder {
  std::size_t index;   // of the argument, starting at 0
  std::size_t length;  // of the placeholder, braces included
};

// The placeholder at the start of text, if it refers to one of `count` arguments.
std::optional<Placeholder> PlaceholderAt(std::u16string_view text, std::size_t count) {
  std::size_t number = 0;
  std::size_t at = 1;
  for (; at < text.size() && text[at] >= u'0' && text[at] <= u'9'; ++at) {
    number = number * 10 + static_cast<std::size_t>(text[at] - u'0');
    if (number > count) return std::nullopt;  // no need to read on, and no overflow
  }
  if (number == 0 || at == text.size() || text[at] != u'}') return std::nullopt;
  return Placeholder{number - 1, at + 1};
}

}  // namespace

std::optional<std::u16string> MessageLibrary::Find(std::uint16_t language, std::uint16_t id) const {
  auto text = lookup_ ? lookup_(language, id) : std::nullopt;
  return text && !text->empty() ? text : std::nullopt;
}

MessageLibrary MessageLibrary::Open(const std::filesystem::path& addin_folder) {
  const std::filesystem::path path =
      addin_folder / LibraryFileName("ZavrelMessages", MajorVersion());
  auto loaded = StringResources::Load(path);
  if (!loaded) {
    LogComposedLine(
        [&] { return "Message library not loaded, texts are missing: " + Utf8FromPath(path); });
    return MessageLibrary();
  }
  auto resources = std::make_shared<const StringResources>(std::move(*loaded));
  return MessageLibrary([resources](std::uint16_t language, std::uint16_t id) {
    return resources->Find(language, id);
  });
}

std::u16string MessageLibrary::Text(std::int32_t id, std::uint32_t language) const {
  if (id == kNoMessage) return {};
  if (id >= 0 && id <= 0xFFFF) {
    const auto number = static_cast<std::uint16_t>(id);
    const auto exact = static_cast<std::uint16_t>(language & 0xFFFF);
    const auto primary = static_cast<std::uint16_t>(language & 0x3FF);
    if (auto text = Find(exact, number)) return *text;
    if (auto text = primary != exact ? Find(primary, number) : std::nullopt) return *text;
    if (auto text = Find(kEnglish, number)) return *text;
  }
  return u"Message " + NumberText(id);
}

std::u16string ComposeMessage(std::u16string_view text, const MessageArguments& arguments) {
  std::u16string composed;
  composed.reserve(text.size());
  while (!text.empty()) {
    std::size_t taken = 1;
    if (text.starts_with(u"{{")) {
      composed += u'{';
      taken = 2;
    } else if (const auto placeholder =
                   text.front() == u'{' ? PlaceholderAt(text, arguments.size()) : std::nullopt) {
      composed += ArgumentText(arguments[placeholder->index]);
      taken = placeholder->length;
    } else {
      composed += text.front();
    }
    text.remove_prefix(taken);
  }
  return composed;
}

}  // namespace zavrel
