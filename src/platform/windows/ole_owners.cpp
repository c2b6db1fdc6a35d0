#include "platform/windows/ole_owners.h"

#include <climits>

namespace zavrel {

OwnedBstr OwnedBstr::Ansi(std::u16string_view text) {
  if (text.empty()) return OwnedBstr(SysAllocStringByteLen(nullptr, 0));
  if (text.size() > INT_MAX / 4) throw std::bad_alloc();
  const auto* wide = reinterpret_cast<const wchar_t*>(text.data());
  const auto length = static_cast<int>(text.size());
  const int bytes = WideCharToMultiByte(CP_ACP, 0, wide, length, nullptr, 0, nullptr, nullptr);
  if (bytes <= 0) throw std::bad_alloc();
  OwnedBstr ansi(SysAllocStringByteLen(nullptr, static_cast<UINT>(bytes)));
  WideCharToMultiByte(CP_ACP, 0, wide, length, reinterpret_cast<char*>(ansi.text_), bytes, nullptr,
                      nullptr);
  return ansi;
}

}  // namespace zavrel
