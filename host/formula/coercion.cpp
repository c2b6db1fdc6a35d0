#include "host/formula/coercion.h"

#include <charconv>
#include <cmath>
#include <cstring>

#include "host/workbook/text.h"

namespace zavhost {
namespace {

/// True if both numbers have the same 15 significant digits.
bool EqualAtFifteenDigits(double a, double b) {
  if (a == b) return true;
  if (std::fabs(a - b) > 1e-14 * std::fabs(a)) return false;
  char shown_a[32];
  char shown_b[32];
  const auto end_a = std::to_chars(shown_a, shown_a + 32, a, std::chars_format::scientific, 14);
  const auto end_b = std::to_chars(shown_b, shown_b + 32, b, std::chars_format::scientific, 14);
  const auto length = end_a.ptr - shown_a;
  return length == end_b.ptr - shown_b &&
         std::memcmp(shown_a, shown_b, static_cast<std::size_t>(length)) == 0;
}

int RankOf(const Value& value) {
  return value.number() ? 0 : value.text() ? 1 : value.boolean() ? 2 : value.error() ? 3 : 4;
}

/// The value of a blank when compared with `other`.
Value BlankBeside(const Value& other) {
  if (other.text() != nullptr) return Value(u"");
  if (other.boolean() != nullptr) return false;
  return 0.0;
}

/// Negative, zero or positive; the values are neither errors nor blanks.
int Compare(const Value& left, const Value& right) {
  const double* left_number = left.number();
  const double* right_number = right.number();
  if (left_number && right_number && EqualAtFifteenDigits(*left_number, *right_number)) return 0;
  return CompareValues(left, right);
}

Value ApplyComparison(Operator op, const Value& left, const Value& right) {
  if (left.error() != nullptr) return left;
  if (right.error() != nullptr) return right;
  const int order = left.IsBlank() && right.IsBlank() ? 0
                    : left.IsBlank()                  ? Compare(BlankBeside(right), right)
                    : right.IsBlank()                 ? Compare(left, BlankBeside(left))
                                                      : Compare(left, right);
  return OrderSatisfies(op, order);
}

Value Concatenate(const Value& left, const Value& right) {
  Converted<std::u16string> first = ToText(left);
  if (first.error) return *first.error;
  const Converted<std::u16string> second = ToText(right);
  if (second.error) return *second.error;
  if (first.value.size() + second.value.size() > kLongestText) return ErrorCode::kValue;
  first.value += second.value;
  return Value(std::u16string_view(first.value));
}

Value Power(double base, double exponent) {
  if (base == 0.0 && exponent == 0.0) return ErrorCode::kNum;
  if (base == 0.0 && exponent < 0.0) return ErrorCode::kDiv0;
  return NumberValue(std::pow(base, exponent));
}

Value Calculate(Operator op, double left, double right) {
  switch (op) {
    case Operator::kPower:
      return Power(left, right);
    case Operator::kMultiply:
      return NumberValue(left * right);
    case Operator::kDivide:
      if (right == 0.0) return ErrorCode::kDiv0;
      return NumberValue(left / right);
    case Operator::kAdd:
      return NumberValue(left + right);
    default:
      return NumberValue(left - right);
  }
}

}  // namespace

bool OrderSatisfies(Operator comparison, int order) {
  switch (comparison) {
    case Operator::kEqual:
      return order == 0;
    case Operator::kNotEqual:
      return order != 0;
    case Operator::kLess:
      return order < 0;
    case Operator::kLessEqual:
      return order <= 0;
    case Operator::kGreater:
      return order > 0;
    default:
      return order >= 0;
  }
}

Converted<double> ToNumber(const Value& value) {
  if (const double* number = value.number()) return {*number, {}};
  if (const bool* boolean = value.boolean()) return {*boolean ? 1.0 : 0.0, {}};
  if (const ErrorCode* error = value.error()) return {0.0, *error};
  if (const std::u16string* text = value.text()) {
    if (const auto number = NumberFromText(*text)) return {*number, {}};
    return {0.0, ErrorCode::kValue};
  }
  return {};
}

Converted<bool> ToBoolean(const Value& value) {
  if (const bool* boolean = value.boolean()) return {*boolean, {}};
  if (const double* number = value.number()) return {*number != 0.0, {}};
  if (const ErrorCode* error = value.error()) return {false, *error};
  if (const std::u16string* text = value.text()) {
    if (EqualIgnoringCase(*text, u"TRUE")) return {true, {}};
    if (EqualIgnoringCase(*text, u"FALSE")) return {false, {}};
    return {false, ErrorCode::kValue};
  }
  return {};
}

Converted<std::u16string> ToText(const Value& value) {
  if (const std::u16string* text = value.text()) return {*text, {}};
  if (const double* number = value.number()) return {GeneralText(*number), {}};
  if (const bool* boolean = value.boolean()) return {*boolean ? u"TRUE" : u"FALSE", {}};
  if (const ErrorCode* error = value.error()) return {{}, *error};
  return {};
}

Value NumberValue(double number) {
  if (!std::isfinite(number)) return ErrorCode::kNum;
  return std::isnormal(number) ? number : 0.0;
}

int CompareValues(const Value& left, const Value& right) {
  const double* left_number = left.number();
  const double* right_number = right.number();
  if (left_number && right_number)
    return int{*left_number > *right_number} - int{*left_number < *right_number};
  const std::u16string* left_text = left.text();
  const std::u16string* right_text = right.text();
  if (left_text && right_text)
    return left_text == right_text ? 0 : CompareIgnoringCase(*left_text, *right_text);
  const bool* left_boolean = left.boolean();
  const bool* right_boolean = right.boolean();
  if (left_boolean && right_boolean) return int{*left_boolean} - int{*right_boolean};
  return RankOf(left) - RankOf(right);
}

bool AreOfOneKind(const Value& left, const Value& right) { return RankOf(left) == RankOf(right); }

Value ApplyUnary(Operator op, const Value& value) {
  if (op == Operator::kPlus) return value;  // without a conversion
  const Converted<double> number = ToNumber(value);
  if (number.error) return *number.error;
  return NumberValue(op == Operator::kMinus ? -number.value : number.value / 100.0);
}

Value ApplyLast(Operator op, const Value& left, const Value& right) {
  Value result = ApplyBinary(op, left, right);
  const double* number = result.number();
  if (number == nullptr || *number == 0.0) return result;
  const double first = ToNumber(left).value;
  const double second = ToNumber(right).value;
  const bool is_rounding = EqualAtFifteenDigits(first, op == Operator::kAdd ? -second : second);
  return is_rounding ? Value(0.0) : result;
}

Value ApplyBinary(Operator op, const Value& left, const Value& right) {
  if (op >= Operator::kEqual) return ApplyComparison(op, left, right);
  if (op == Operator::kConcatenate) return Concatenate(left, right);
  const Converted<double> first = ToNumber(left);
  if (first.error) return *first.error;
  const Converted<double> second = ToNumber(right);
  if (second.error) return *second.error;
  return Calculate(op, first.value, second.value);
}

}  // namespace zavhost
