#include "host/xlsx/messages.h"

#include "host/workbook/value.h"

namespace zavhost {
namespace {

constexpr std::size_t kLongest = 100;

std::string OneLine(std::u16string text) {
  for (char16_t& unit : text) {
    // Controls, the two line separators and the marks that turn the direction of writing.
    if (unit < 0x20 || (unit >= 0x7F && unit < 0xA0) || (unit >= 0x2028 && unit <= 0x202E)) {
      unit = u' ';
    }
  }
  return ToUtf8(text);
}

}  // namespace

std::string Printable(std::u16string_view text) {
  std::u16string shown(text.substr(0, kLongest));
  if (text.size() > kLongest) shown += u"...";
  return OneLine(std::move(shown));
}

std::string Printable(std::string_view text) {
  return Printable(FromUtf8(text.substr(0, 4 * kLongest)));
}

std::string PrintablePath(const std::filesystem::path& path) { return OneLine(path.u16string()); }

}  // namespace zavhost
