#include "host/workbook/text.h"

#include <algorithm>

#include "host/workbook/terminal_text.h"

namespace zavhost {

std::string PrintableUtf8(std::u16string_view text) {
  std::u16string line(text);
  std::replace_if(line.begin(), line.end(), ActsOnTerminal, u' ');
  return Utf8FromUtf16(line);
}

std::string PrintablePath(const std::filesystem::path& path) {
  return PrintableUtf8(Utf16FromUtf8(Utf8FromPath(path)));
}

}  // namespace zavhost
