#include "platform/windows/system_message.h"

#include "platform/utf.h"
#include "platform/windows/wide.h"

namespace zavrel {

std::string SystemMessage(DWORD error) {
  wchar_t buffer[512];
  const DWORD length =
      FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, error, 0,
                     buffer, static_cast<DWORD>(std::size(buffer)), nullptr);
  std::u16string text = FromWide({buffer, length});
  while (!text.empty() && (text.back() <= u' ' || text.back() == u'.')) text.pop_back();
  return text.empty() ? "error " + std::to_string(error) : Utf8FromUtf16(text);
}

}  // namespace zavrel
