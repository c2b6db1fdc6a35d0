#include "host/formula/rounding.h"

#include <charconv>

namespace zavhost {

double AtFifteenDigits(double number) {
  char shown[32];
  const auto end = std::to_chars(shown, shown + 32, number, std::chars_format::scientific, 14);
  std::from_chars(shown, end.ptr, number);
  return number;
}

}  // namespace zavhost
