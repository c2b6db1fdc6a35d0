#pragma once
// Conversions of single values by the rules of the C API.

#include <cstdint>
#include <optional>
#include <string>

#include "host/workbook/value.h"

namespace zavhost {

/// A number from a number, a boolean (1 or 0), a text that spells a number, or a blank (0); nothing
/// otherwise.
std::optional<double> NumberOf(const Value& value);
/// A boolean from a boolean, a number (not 0), the texts TRUE and FALSE, or a blank (FALSE).
std::optional<bool> BooleanOf(const Value& value);
/// The text of a value in General format; nothing for an error.
std::optional<std::u16string> TextOf(const Value& value);

/// An integer between `low` and `high`, without its fraction. kValue if the value is not a number,
/// kNum if the number is out of range.
struct IntegerOutcome {
  std::optional<std::int32_t> integer;
  ErrorCode error = ErrorCode::kValue;
};
IntegerOutcome IntegerOf(const Value& value, std::int32_t low, std::int32_t high);

}  // namespace zavhost
