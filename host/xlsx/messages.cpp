#include "host/xlsx/messages.h"

#include "host/workbook/text.h"

namespace zavhost {
namespace {

constexpr std::size_t kLongest = 100;

}  // namespace

std::string Printable(std::u16string_view text) {
  std::u16string shown(text.substr(0, kLongest));
  if (text.size() > kLongest) shown += u"...";
  return PrintableUtf8(shown);
}

std::string Printable(std::string_view text) {
  return Printable(Utf16FromUtf8(text.substr(0, 4 * kLongest)));
}

}  // namespace zavhost
