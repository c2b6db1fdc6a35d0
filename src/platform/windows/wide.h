#pragma once
// The only place that converts UTF-16 text to and from the types of the Windows API.

#include <windows.h>

#include <string>
#include <string_view>

namespace zavrel {

static_assert(sizeof(wchar_t) == sizeof(char16_t));

inline std::wstring ToWide(std::u16string_view text) { return {text.begin(), text.end()}; }
inline std::u16string FromWide(std::wstring_view text) { return {text.begin(), text.end()}; }

}  // namespace zavrel
