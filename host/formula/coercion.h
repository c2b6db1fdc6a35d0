#pragma once
// How formulas turn one kind of value into another, and the operators over single values.

#include <optional>
#include <string>

#include "host/formula/expression.h"
#include "host/workbook/value.h"

namespace zavhost {

/// A converted value, or the error that stands for it.
template <typename T>
struct Converted {
  T value{};
  std::optional<ErrorCode> error;
};

/// Blank is 0, booleans are 1 and 0, a text is the number it spells; other texts are #VALUE!.
Converted<double> ToNumber(const Value& value);
/// Numbers other than 0 are true, blank is false, a text must spell TRUE or FALSE.
Converted<bool> ToBoolean(const Value& value);
/// Numbers in General format, booleans as TRUE and FALSE, blank as the empty text.
Converted<std::u16string> ToText(const Value& value);

/// A computed number as a cell holds it: #NUM! unless finite, 0 below the normal range.
Value NumberValue(double number);

/// Applies +, - or % before or behind a value, or an operator between two; errors go through, the
/// left one first. Texts compare without regard to letter case, by code unit; kinds order numbers <
/// texts < booleans; numbers are equal when their first 15 significant digits are, as in Excel.
Value ApplyUnary(Operator op, const Value& value);
Value ApplyBinary(Operator op, const Value& left, const Value& right);

}  // namespace zavhost
