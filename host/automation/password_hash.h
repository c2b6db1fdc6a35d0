#pragma once
// Passwords of protected sheets and workbooks as .xlsx files keep them.

#include <cstdint>
#include <string_view>

namespace zavhost {

/// The 16-bit hash of a password (ECMA-376 part 4, transitional attribute "password" of
/// sheetProtection and workbookProtection); 0 for an empty one.
constexpr std::uint16_t PasswordHash(std::u16string_view password) {
  if (password.empty()) return 0;
  const auto turned = [](std::uint32_t hash) {
    return ((hash >> 14) & 1) | ((hash << 1) & 0x7FFF);
  };
  std::uint32_t hash = 0;
  for (std::size_t i = password.size(); i-- > 0;) hash = turned(hash) ^ (password[i] & 0xFFu);
  hash = turned(hash) ^ static_cast<std::uint32_t>(password.size()) ^ 0xCE4B;
  return static_cast<std::uint16_t>(hash);
}
// Excel's hash of "test", as many files have it.
static_assert(PasswordHash(u"test") == 0xCBEB);

}  // namespace zavhost
