#include <locale.h>
#include <wctype.h>

#include "host/workbook/letter_case.h"

namespace zavhost {

char16_t SystemUpperCase(char16_t unit) {
  // The program's own locale may be "C", which knows ASCII only. Kept for the life of the process.
  static const locale_t unicode = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
  if (unicode == nullptr) return unit;
  const wint_t upper = towupper_l(static_cast<wint_t>(unit), unicode);
  return upper <= 0xFFFF ? static_cast<char16_t>(upper) : unit;
}

}  // namespace zavhost
