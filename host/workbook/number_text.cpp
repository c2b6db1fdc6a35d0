#include <charconv>
#include <cmath>
#include <string>
#include <system_error>

#include "host/workbook/calendar.h"
#include "host/workbook/date_text.h"
#include "host/workbook/decimal_digits.h"
#include "host/workbook/value.h"
#include "platform/white_space.h"

namespace zavhost {
namespace {

bool IsDigit(char16_t unit) { return unit >= u'0' && unit <= u'9'; }
/// Takes the leading digits, optionally with commas between groups of three. False if a comma is
/// not a valid thousands separator.
bool TakeWholePart(std::u16string_view& text, std::string& digits) {
  std::size_t run = 0;
  bool grouped = false;
  while (!text.empty()) {
    if (IsDigit(text.front())) {
      digits.push_back(static_cast<char>(text.front()));
      ++run;
    } else if (text.front() == u',') {
      if (run == 0 || run > 3 || (grouped && run != 3)) return false;
      grouped = true;
      run = 0;
    } else {
      break;
    }
    text.remove_prefix(1);
  }
  return !grouped || run == 3;
}

void TakeDigits(std::u16string_view& text, std::string& digits) {
  while (!text.empty() && IsDigit(text.front())) {
    digits.push_back(static_cast<char>(text.front()));
    text.remove_prefix(1);
  }
}

/// Takes a leading "E+05". False if an exponent begins but is malformed.
bool TakeExponent(std::u16string_view& text, std::string& number) {
  if (text.empty() || (text.front() != u'e' && text.front() != u'E')) return true;
  text.remove_prefix(1);
  number.push_back('e');
  if (!text.empty() && (text.front() == u'+' || text.front() == u'-')) {
    number.push_back(static_cast<char>(text.front()));
    text.remove_prefix(1);
  }
  const std::size_t before = number.size();
  TakeDigits(text, number);
  return number.size() > before;
}

bool TakeSign(std::u16string_view& text, char16_t sign) {
  if (text.empty() || text.front() != sign) return false;
  text.remove_prefix(1);
  return true;
}

std::optional<double> NumberOfDigits(const std::string& number) {
  double value = 0.0;
  const auto read = std::from_chars(number.data(), number.data() + number.size(), value);
  if (read.ec != std::errc()) return std::nullopt;
  return value;
}

/// "1 1/2" without its sign.
std::optional<double> MixedFraction(std::u16string_view text) {
  std::string parts[3];
  constexpr char16_t kEnds[] = {u' ', u'/'};
  for (int i = 0; i < 3; ++i) {
    if (i > 0 && !TakeSign(text, kEnds[i - 1])) return std::nullopt;
    TakeDigits(text, parts[i]);
    if (parts[i].empty() || parts[i].size() > 9) return std::nullopt;
  }
  const double denominator = NumberOfDigits(parts[2]).value_or(0.0);
  if (!text.empty() || denominator == 0.0) return std::nullopt;
  return *NumberOfDigits(parts[0]) + *NumberOfDigits(parts[1]) / denominator;
}

/// Digits with a decimal point and an exponent, and a percent sign behind them.
std::optional<double> DecimalNumber(std::u16string_view text) {
  std::string number;
  if (!TakeWholePart(text, number)) return std::nullopt;
  std::size_t digits = number.size();
  if (TakeSign(text, u'.')) {
    if (digits == 0) number.push_back('0');
    number.push_back('.');
    const std::size_t point = number.size();
    TakeDigits(text, number);
    digits += number.size() - point;
    if (number.size() == point) number.push_back('0');
  }
  if (digits == 0 || !TakeExponent(text, number)) return std::nullopt;
  text = zavrel::Trimmed(text);
  const bool percent = TakeSign(text, u'%');
  const auto value = text.empty() ? NumberOfDigits(number) : std::nullopt;
  return value && percent ? *value / 100.0 : value;
}

/// A number with a sign or in parentheses, and a currency sign.
std::optional<double> SignedNumber(std::u16string_view text) {
  bool is_negative = false;
  bool has_sign = false;
  const auto take_sign = [&] {
    is_negative = is_negative || text.starts_with(u'-');
    has_sign = TakeSign(text, u'-') || TakeSign(text, u'+');
  };
  if (text.starts_with(u'(') && text.ends_with(u')')) {
    text = zavrel::Trimmed(text.substr(1, text.size() - 2));
    is_negative = has_sign = true;
  } else {
    take_sign();
  }
  if (TakeSign(text, u'$')) {
    while (text.starts_with(u' ')) text.remove_prefix(1);
    if (!has_sign) take_sign();
  }
  auto number = DecimalNumber(text);
  if (!number) number = MixedFraction(text);
  return number && is_negative ? -*number : number;
}

std::u16string Widen(std::string_view ascii) { return {ascii.begin(), ascii.end()}; }

}  // namespace

std::u16string GeneralText(double number) {
  if (!std::isfinite(number)) return std::u16string(ErrorText(ErrorCode::kNum));
  if (number == 0.0) return u"0";
  const DecimalDigits decimal(number);
  const std::string& digits = decimal.digits();
  const int exponent = decimal.WholeDigits() - 1;

  std::string shown = number < 0 ? "-" : "";
  const int count = static_cast<int>(digits.size());
  if (exponent < -4 || exponent >= 20) {
    shown += digits[0];
    if (count > 1) shown.append(".").append(digits, 1);
    shown += exponent < 0 ? "E-" : "E+";
    const std::string power = std::to_string(std::abs(exponent));
    if (power.size() < 2) shown += '0';
    shown += power;
  } else if (exponent < 0) {
    shown.append("0.").append(static_cast<std::size_t>(-exponent - 1), '0').append(digits);
  } else if (count <= exponent + 1) {
    shown.append(digits).append(static_cast<std::size_t>(exponent + 1 - count), '0');
  } else {
    const std::size_t whole = static_cast<std::size_t>(exponent) + 1;
    shown.append(digits, 0, whole).append(".").append(digits, whole);
  }
  return Widen(shown);
}

std::u16string GeneralText(const Value& value) {
  if (const double* number = value.number()) return GeneralText(*number);
  if (const bool* boolean = value.boolean()) return *boolean ? u"TRUE" : u"FALSE";
  if (const std::u16string* text = value.text()) return *text;
  if (const ErrorCode* error = value.error()) return std::u16string(ErrorText(*error));
  return {};
}

std::optional<double> NumberFromText(std::u16string_view text, const DateReading& dates) {
  text = zavrel::Trimmed(text);
  if (const auto number = SignedNumber(text)) return number;
  const auto read = DateAndTimeFromText(text, dates.year.value_or(ClockYear()));
  if (!read) return std::nullopt;
  if (!read->day) return read->time;
  const int day = *read->day - FirstDay(dates.date1904);
  if (day < 0) return std::nullopt;
  return day + read->time.value_or(0.0);
}

}  // namespace zavhost
