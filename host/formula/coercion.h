#pragma once
// Conversions between kinds of values in formulas, and operators for single values.

#include <optional>
#include <string>

#include "host/formula/expression.h"
#include "host/workbook/value.h"

namespace zavhost {

/// A converted value, or an error.
template <typename T>
struct Converted {
  T value{};
  std::optional<ErrorCode> error;
};

/// Blank is 0, booleans are 1 and 0, text becomes the number that it spells; other text is #VALUE!.
/// A text's date is a serial number of the 1900 system in every workbook, and without a year it is
/// in the year of the computer's clock; functions of dates read their arguments with DateReader,
/// which knows better.
Converted<double> ToNumber(const Value& value);
/// Numbers other than 0 are true, blank is false, text must spell TRUE or FALSE.
Converted<bool> ToBoolean(const Value& value);
/// Numbers in General format, booleans as TRUE and FALSE, blank as empty text.
Converted<std::u16string> ToText(const Value& value);

/// A computed number as a cell stores it: #NUM! if it is not finite, 0 if it is subnormal.
Value NumberValue(double number);

/// The order in which values are sorted and looked up: negative, zero or positive. Numbers come
/// before texts, then booleans, errors and blanks; two errors are equal. Texts are compared by code
/// point without regard to letter case. Numbers differ by any bit, for only then is this an order.
int CompareValues(const Value& left, const Value& right);
/// Whether a comparison holds for values of this order: "<" for a negative one, and so on.
bool OrderSatisfies(Operator comparison, int order);
/// True for two numbers, two texts, two booleans, two errors or two blanks.
bool AreOfOneKind(const Value& left, const Value& right);

/// Applies +, - or % before or after a value, or an operator between two values. Errors are
/// returned, the left one first. The order is that of CompareValues, but numbers are equal if their
/// first 15 significant digits are equal, as in Excel.
Value ApplyUnary(Operator op, const Value& value);
Value ApplyBinary(Operator op, const Value& left, const Value& right);

/// The sum or difference of two values as the last step of a formula: 0 if no more than the
/// rounding of its operands is left, as in Excel ("Floating-point arithmetic may give inaccurate
/// results in Excel", Microsoft), so that 0.5-0.4-0.1 is 0 but (0.5-0.4-0.1)*1 is not.
Value ApplyLast(Operator op, const Value& left, const Value& right);

}  // namespace zavhost
