#include "numbers/numeric_range.h"

#include <fmt/format.h>

#include <cmath>

namespace zavrel {

bool NumericRange::Contains(double number) const {
  if (!std::isfinite(number)) return false;
  if (lower && (lower->inclusive ? number < lower->value : number <= lower->value)) return false;
  if (upper && (upper->inclusive ? number > upper->value : number >= upper->value)) return false;
  return true;
}

std::string NumericRange::Text() const {
  std::string text =
      lower ? fmt::format("{}{}", lower->inclusive ? '[' : '(', lower->value) : "(-inf";
  text += upper ? fmt::format(", {}{}", upper->value, upper->inclusive ? ']' : ')') : ", inf)";
  return text;
}

}  // namespace zavrel
