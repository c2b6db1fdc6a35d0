#pragma once
// The text of cells, names and messages.

#include <filesystem>
#include <string>
#include <string_view>

#include "platform/letter_case.h"
#include "platform/utf.h"

namespace zavhost {

using zavrel::AppendUtf8;
using zavrel::CompareIgnoringCase;
using zavrel::EqualIgnoringCase;
using zavrel::IsValidUtf8;
using zavrel::LowerCase;
using zavrel::UpperCase;
using zavrel::Utf16FromPath;
using zavrel::Utf16FromUtf8;
using zavrel::Utf8FromPath;
using zavrel::Utf8FromUtf16;

/// The text on one line and safe for a terminal: control characters, line separators and marks for
/// the direction of writing become blanks.
std::string PrintableUtf8(std::u16string_view text);
std::string PrintablePath(const std::filesystem::path& path);

}  // namespace zavhost
