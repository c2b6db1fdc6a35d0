#include "host/capi/scalar_conversion.h"

#include <cmath>

#include "host/workbook/text.h"

namespace zavhost {

std::optional<double> NumberOf(const Value& value) {
  if (const double* number = value.number()) return *number;
  if (const bool* boolean = value.boolean()) return *boolean ? 1.0 : 0.0;
  if (const std::u16string* text = value.text()) return NumberFromText(*text);
  if (value.IsBlank()) return 0.0;
  return std::nullopt;
}

std::optional<bool> BooleanOf(const Value& value) {
  if (const bool* boolean = value.boolean()) return *boolean;
  if (const double* number = value.number()) return *number != 0.0;
  if (const std::u16string* text = value.text()) {
    if (EqualIgnoringCase(*text, u"TRUE")) return true;
    if (EqualIgnoringCase(*text, u"FALSE")) return false;
    return std::nullopt;
  }
  if (value.IsBlank()) return false;
  return std::nullopt;
}

std::optional<std::u16string> TextOf(const Value& value) {
  if (const std::u16string* text = value.text()) return *text;
  if (const double* number = value.number()) return GeneralText(*number);
  if (const bool* boolean = value.boolean()) return *boolean ? u"TRUE" : u"FALSE";
  if (value.IsBlank()) return u"";
  return std::nullopt;
}

IntegerOutcome IntegerOf(const Value& value, std::int32_t low, std::int32_t high) {
  const std::optional<double> number = NumberOf(value);
  if (!number) return {};
  const double whole = std::trunc(*number);
  if (!(whole >= low && whole <= high)) return {std::nullopt, ErrorCode::kNum};
  return {static_cast<std::int32_t>(whole), ErrorCode::kValue};
}

}  // namespace zavhost
