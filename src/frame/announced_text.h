#pragma once
// The texts that a companion hands over when it announces itself.

#include <cstddef>
#include <string>
#include <string_view>

namespace zavrel {

/// Longest announced text that is kept, in code units: Excel's longest path, and more than any
/// version.
inline constexpr std::size_t kAnnouncedTextLimit = 32767;

/// A null-terminated wide text; null is empty, one that never ends is cut at the limit.
std::u16string AnnouncedText(const char16_t* text);

/// Whether the bytes of a macro's string are wide text (true) or text of the ANSI code page.
///
/// A macro that declares a parameter `As String` hands over single bytes; one that passes
/// StrPtr(text) hands over wide text; both arrive as the same type. Single-byte text never holds a
/// zero byte. Wide text has an even number of bytes and, as soon as one of its characters is below
/// U+0100, a zero byte: every path, version and help location holds such a character (a digit, a
/// dot, a separator).
bool IsWideText(std::string_view bytes);

}  // namespace zavrel
