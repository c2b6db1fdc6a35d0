// Functions that turn values into texts and texts into values.

#include <cmath>

#include "host/formula/builtin_groups.h"
#include "host/formula/date_arguments.h"
#include "host/formula/text_result.h"
#include "host/workbook/decimal_digits.h"
#include "host/workbook/number_format.h"
#include "platform/white_space.h"

namespace zavhost {
namespace {

Operand NumberOfText(const BuiltInCall& call) {
  const Value value = ArgumentReader(call).Any(0);
  if (value.boolean() != nullptr) return Value(ErrorCode::kValue);
  if (value.text() == nullptr) return value.IsBlank() ? Value(0.0) : value;
  const auto number = NumberFromText(*value.text(), DatesOf(call.context));
  return number ? NumberValue(*number) : Value(ErrorCode::kValue);
}

/// The digits of a text with the given separators in the form that NumberFromText reads; nothing if
/// a separator is in the wrong place.
std::optional<std::u16string> WithoutSeparators(const std::u16string& text, char16_t decimal,
                                                char16_t group) {
  std::u16string plain;
  bool is_behind_point = false;
  for (const char16_t unit : text) {
    if (zavrel::IsWhiteSpace(unit)) continue;
    if (unit == decimal) {
      if (is_behind_point) return std::nullopt;
      is_behind_point = true;
      plain += u'.';
    } else if (unit == group) {
      if (is_behind_point) return std::nullopt;
    } else if (unit == u'.' || unit == u',') {
      return std::nullopt;
    } else {
      plain += unit;
    }
  }
  return plain;
}

/// NUMBERVALUE
Operand NumberOfForeignText(const BuiltInCall& call) {
  ArgumentReader read(call);
  const std::u16string text = read.Text(0);
  const std::u16string decimal = read.Text(1, u".");
  const std::u16string group = read.Text(2, u",");
  read.Require(!decimal.empty() && !group.empty(), ErrorCode::kValue);
  read.Require(read.failed() || decimal[0] != group[0], ErrorCode::kValue);
  if (read.failed()) return read.failure();
  auto plain = WithoutSeparators(text, decimal[0], group[0]);
  if (!plain) return Value(ErrorCode::kValue);
  double percents = 0;
  for (; plain->ends_with(u'%'); percents += 1) plain->pop_back();
  if (plain->empty()) return Value(percents > 0 ? Value(ErrorCode::kValue) : Value(0.0));
  const auto number = NumberFromText(*plain, DatesOf(call.context));
  if (!number || plain->ends_with(u'%')) return Value(ErrorCode::kValue);
  return NumberValue(*number / std::pow(100.0, percents));
}

Operand Format(const BuiltInCall& call) {
  ArgumentReader read(call);
  Value value = read.Any(0);
  if (value.error() != nullptr) return value;
  const std::u16string code = read.Text(1);
  if (read.failed()) return read.failure();
  const DateReading dates = DatesOf(call.context);
  if (value.text() != nullptr) {
    if (const auto number = NumberFromText(*value.text(), dates)) value = *number;
  }
  auto text = FormattedText(value, code, dates.date1904);
  if (!text) return Value(ErrorCode::kValue);
  return TextResult(std::move(*text));
}

/// A number rounded to decimal places, which can be negative, in a format with these places.
Operand Rounded(double number, double places, std::u16string_view whole, bool is_money) {
  constexpr double kMostPlaces = 127;
  if (places > kMostPlaces) return Value(ErrorCode::kValue);
  places = std::max(places, -400.0);
  DecimalDigits digits(number);
  digits.RoundTo(static_cast<int>(places));
  if (digits.IsZero()) {
    number = 0.0;
  } else if (places < 0) {
    const double unit = std::pow(10.0, -places);
    number = std::round(number / unit) * unit;
  }
  std::u16string code(whole);
  if (places > 0) code.append(u".").append(static_cast<std::size_t>(places), u'0');
  if (is_money) {
    code = u"$" + code;
    if (number < 0.0) code = u"[<0](" + code + u")";
  }
  auto text = FormattedText(number, code, false);
  if (!text) return Value(ErrorCode::kValue);
  return TextResult(std::move(*text));
}

Operand Fixed(const BuiltInCall& call) {
  ArgumentReader read(call);
  const double number = read.Number(0);
  const double places = read.Whole(1, 2.0);
  const bool has_no_commas = read.Boolean(2, false);
  if (read.failed()) return read.failure();
  return Rounded(number, places, has_no_commas ? u"0" : u"#,##0", false);
}

Operand Dollar(const BuiltInCall& call) {
  ArgumentReader read(call);
  const double number = read.Number(0);
  const double places = read.Whole(1, 2.0);
  if (read.failed()) return read.failure();
  return Rounded(number, places, u"#,##0", true);
}

std::u16string Shown(const Value& value, bool is_strict) {
  if (const ErrorCode* error = value.error()) return std::u16string(ErrorText(*error));
  std::u16string text = ToText(value).value;
  if (!is_strict || value.text() == nullptr) return text;
  std::u16string quoted = u"\"";
  for (const char16_t unit : text) quoted.append(unit == u'"' ? 2 : 1, unit);
  return quoted + u"\"";
}

/// The format argument of VALUETOTEXT and ARRAYTOTEXT.
bool IsStrict(ArgumentReader& read) {
  const double format = read.Whole(1, 0.0);
  read.Require(format == 0 || format == 1, ErrorCode::kValue);
  return format == 1;
}

Operand ValueToText(const BuiltInCall& call) {
  ArgumentReader read(call);
  const bool is_strict = IsStrict(read);
  return read.failed() ? read.failure() : TextResult(Shown(read.Any(0), is_strict));
}

/// "1, a, TRUE", or strictly {1,"a";TRUE,FALSE} with its braces.
Operand ArrayToText(const BuiltInCall& call) {
  ArgumentReader read(call);
  const bool is_strict = IsStrict(read);
  const ArrayPtr array = read.Array(0);
  if (read.failed()) return read.failure();
  std::u16string text = is_strict ? u"{" : u"";
  for (std::int32_t row = 0; row < array->rows; ++row) {
    for (std::int32_t column = 0; column < array->columns; ++column) {
      if (row + column > 0) text += !is_strict ? u", " : column == 0 ? u";" : u",";
      text += Shown(array->At(row, column), is_strict);
      if (text.size() > kLongestText) return Value(ErrorCode::kValue);
    }
  }
  return TextResult(is_strict ? text + u"}" : text);
}

/// Groups of Roman digits, from the largest on, each with the form of ROMAN from which it is used:
/// the higher the form, the smaller a digit can be subtracted from another.
struct RomanGroup {
  std::u16string_view letters;
  int value;
  int form;
};
constexpr RomanGroup kRomanGroups[] = {
    {u"M", 1000, 0}, {u"IM", 999, 4}, {u"VM", 995, 3}, {u"XM", 990, 2}, {u"LM", 950, 1},
    {u"CM", 900, 0}, {u"D", 500, 0},  {u"ID", 499, 4}, {u"VD", 495, 3}, {u"XD", 490, 2},
    {u"LD", 450, 1}, {u"CD", 400, 0}, {u"C", 100, 0},  {u"IC", 99, 2},  {u"VC", 95, 1},
    {u"XC", 90, 0},  {u"L", 50, 0},   {u"IL", 49, 2},  {u"VL", 45, 1},  {u"XL", 40, 0},
    {u"X", 10, 0},   {u"IX", 9, 0},   {u"V", 5, 0},    {u"IV", 4, 0},   {u"I", 1, 0},
};

Operand Roman(const BuiltInCall& call) {
  ArgumentReader read(call);
  double number = read.Whole(0);
  double form = read.Whole(1, 0.0);
  const Value written_form = read.Any(1);
  if (const bool* is_classic = written_form.boolean()) form = *is_classic ? 0 : 4;
  read.Require(number >= 0 && number <= 3999 && form >= 0 && form <= 4, ErrorCode::kValue);
  if (read.failed()) return read.failure();
  std::u16string roman;
  for (const RomanGroup& group : kRomanGroups) {
    if (group.form > form) continue;
    for (; number >= group.value; number -= group.value) roman += group.letters;
  }
  return TextResult(std::move(roman));
}

int RomanDigit(char16_t letter) {
  for (const RomanGroup& group : kRomanGroups) {
    if (group.letters.size() == 1 && group.letters[0] == letter) return group.value;
  }
  return 0;
}

/// ARABIC: a digit before a larger one is subtracted.
Operand Arabic(const BuiltInCall& call) {
  constexpr std::size_t kLongestNumber = 255;
  ArgumentReader read(call);
  const std::u16string text = read.Text(0);
  if (read.failed()) return read.failure();
  const std::u16string roman = UpperCase(zavrel::Trimmed(text));
  if (roman.size() > kLongestNumber) return Value(ErrorCode::kValue);
  const bool is_negative = roman.starts_with(u'-');
  double number = 0;
  int before = 0;
  for (const char16_t letter : roman.substr(is_negative ? 1 : 0)) {
    const int digit = RomanDigit(letter);
    if (digit == 0) return Value(ErrorCode::kValue);
    number += digit - (before < digit ? 2 * before : 0);
    before = digit;
  }
  return Value(is_negative ? -number : number);
}

constexpr BuiltInFunction kFunctions[] = {
    {u"VALUE", 1, 1, "s", NumberOfText},
    {u"NUMBERVALUE", 1, 3, "s", NumberOfForeignText},
    {u"TEXT", 2, 2, "s", Format},
    {u"FIXED", 1, 3, "s", Fixed},
    {u"DOLLAR", 1, 2, "s", Dollar},
    {u"VALUETOTEXT", 1, 2, "s", ValueToText},
    {u"ARRAYTOTEXT", 1, 2, "as", ArrayToText},
    {u"ROMAN", 1, 2, "s", Roman},
    {u"ARABIC", 1, 1, "s", Arabic},
};

}  // namespace

std::span<const BuiltInFunction> NumberTextFunctions() { return kFunctions; }

}  // namespace zavhost
