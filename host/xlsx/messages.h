#pragma once
// Error messages about files: one line each, whatever the file contains.

#include <string>
#include <string_view>

namespace zavhost {

/// Text from a file in a form for messages: valid UTF-8 without control characters, shortened if it
/// is long.
std::string Printable(std::string_view text);
std::string Printable(std::u16string_view text);

}  // namespace zavhost
