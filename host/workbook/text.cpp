#include "host/workbook/text.h"

namespace zavhost {

std::string PrintableUtf8(std::u16string_view text) {
  std::u16string line(text);
  for (char16_t& unit : line) {
    const bool control = unit < 0x20 || (unit >= 0x7F && unit < 0xA0);
    if (control || (unit >= 0x2028 && unit <= 0x202E) || (unit >= 0x2066 && unit <= 0x2069))
      unit = u' ';
  }
  return Utf8FromUtf16(line);
}

std::string PrintablePath(const std::filesystem::path& path) {
  return PrintableUtf8(Utf16FromUtf8(Utf8FromPath(path)));
}

}  // namespace zavhost
