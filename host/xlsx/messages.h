#pragma once
// Error messages about files: one line each, whatever the file holds.

#include <string>
#include <string_view>

namespace zavhost {

/// Text out of a file, fit for a message: valid UTF-8 without control characters, shortened if
/// long.
std::string Printable(std::string_view text);
std::string Printable(std::u16string_view text);

}  // namespace zavhost
