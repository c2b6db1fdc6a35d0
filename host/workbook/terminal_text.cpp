#include "host/workbook/terminal_text.h"

#include <fmt/format.h>

#include "platform/utf.h"

namespace zavhost {

std::string EscapedUtf8(std::string_view text) {
  std::u16string safe;
  safe.reserve(text.size());
  for (const char16_t unit : zavrel::Utf16FromUtf8(text)) {
    const bool is_layout = unit == u'\t' || unit == u'\r' || unit == u'\n';
    if (is_layout || !ActsOnTerminal(unit)) {
      safe += unit;
    } else {
      safe += zavrel::Utf16FromUtf8(fmt::format("\\u{:04X}", static_cast<unsigned>(unit)));
    }
  }
  return zavrel::Utf8FromUtf16(safe);
}

}  // namespace zavhost
