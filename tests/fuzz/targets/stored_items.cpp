// Items in the rows of a workbook's hidden sheet: whatever the rows hold, what is read of them is
// written and read as the same again.
#include "services/stored_items.h"

#include "fuzz/bytes.h"
#include "fuzz/target.h"
#include "platform/utf.h"

namespace zavrel::tests {
namespace {

using services::HeadingIn;
using services::ItemsIn;

std::u16string HexOf(std::string_view bytes) {
  constexpr std::u16string_view kDigits = u"0123456789abcdef";
  std::u16string text;
  for (const char byte : bytes) {
    const auto value = static_cast<unsigned char>(byte);
    text += kDigits[value >> 4];
    text += kDigits[value & 15];
  }
  return text;
}

void Read(std::span<const std::uint8_t> input) {
  Bytes bytes(input);
  const bool as_bytes = bytes.Below(2) == 1;
  const std::string_view first = bytes.Text(200), second = bytes.Rest();
  const std::vector<std::u16string> rows = {as_bytes ? HexOf(first) : Utf16FromUtf8(first),
                                            as_bytes ? HexOf(second) : Utf16FromUtf8(second)};
  if (const auto items = ItemsIn(rows)) {
    const auto again = ItemsIn(services::RowsOf(*items));
    Require(again && services::RowsOf(*again) == services::RowsOf(*items),
            "items change when they are written");
  }
  if (const auto heading = HeadingIn(rows[1]))
    Require(HeadingIn(heading->Text()) == heading, "a heading changes when it is written");
}

const FuzzTarget target("stored_items", Read);

}  // namespace
}  // namespace zavrel::tests
