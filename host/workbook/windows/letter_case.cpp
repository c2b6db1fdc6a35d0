#include <windows.h>

#include "host/workbook/letter_case.h"

namespace zavhost {

char16_t SystemUpperCase(char16_t unit) {
  const wchar_t source = static_cast<wchar_t>(unit);
  wchar_t upper = source;
  if (LCMapStringEx(LOCALE_NAME_INVARIANT, LCMAP_UPPERCASE, &source, 1, &upper, 1, nullptr, nullptr,
                    0) != 1) {
    return unit;
  }
  return static_cast<char16_t>(upper);
}

}  // namespace zavhost
