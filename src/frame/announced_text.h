#pragma once
// The texts of a companion's announcement.

#include <cstddef>
#include <string>
#include <string_view>

namespace zavrel {

/// The longest announced text that is kept, in code units: enough for Excel's longest path and any
/// version.
inline constexpr std::size_t kAnnouncedTextLimit = 32767;

/// A copy of a null-terminated wide text: empty for null, cut at the limit if it does not end
/// before.
std::u16string AnnouncedText(const char16_t* text);

/// Whether the bytes of a macro's string are wide text (true) or text of the ANSI code page.
///
/// A macro that declares a parameter `As String` passes single bytes; one that passes StrPtr(text)
/// passes wide text. Both arrive as the same type. Single-byte text never holds a zero byte. Wide
/// text has an even number of bytes, and a zero byte if any of its characters is below U+0100.
/// Every path, version and help location has such a character (a digit, a dot, a separator).
bool IsWideText(std::string_view bytes);

}  // namespace zavrel
