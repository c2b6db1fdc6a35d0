#pragma once
// The operating system that the code runs on.

#include <cstdint>
#include <string>

namespace zavrel {

/// Name, version and build of the operating system, as text for users.
std::u16string OperatingSystemDescription();

/// Primary language id of the calling thread's locale (the low 10 bits of the locale id): 9 is
/// English, 7 German. Always English on systems whose locales have no such id.
std::uint32_t ThreadPrimaryLanguage();

/// Names the calling thread for debuggers. Systems may ignore or truncate the name.
void NameThisThread(const char* name) noexcept;

}  // namespace zavrel
