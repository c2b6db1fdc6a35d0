// Numbers in bases other than ten.

#include <cmath>

#include "host/formula/builtin_groups.h"
#include "host/formula/text_result.h"

namespace zavhost {
namespace {

/// The value of a digit or letter; 36 for what is neither.
int DigitValue(char16_t digit) {
  if (digit >= u'0' && digit <= u'9') return digit - u'0';
  if (digit >= u'A' && digit <= u'Z') return digit - u'A' + 10;
  if (digit >= u'a' && digit <= u'z') return digit - u'a' + 10;
  return 36;
}

/// The number of the digits in a base; nothing if one of them is no digit there.
std::optional<double> NumberIn(int base, std::u16string_view digits) {
  double number = 0.0;
  for (const char16_t digit : digits) {
    const int value = DigitValue(digit);
    if (value >= base) return std::nullopt;
    number = number * base + value;
  }
  return number;
}

/// The digits of a whole number from 0 up to 2^53 in a base.
std::u16string DigitsIn(int base, double number) {
  constexpr std::u16string_view kDigits = u"0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ";
  std::u16string digits;
  do {
    digits += kDigits[static_cast<std::size_t>(std::fmod(number, base))];
    number = std::floor(number / base);
  } while (number > 0);
  return {digits.rbegin(), digits.rend()};
}

/// Texts of BIN2DEC and its relatives have ten digits at most; negative numbers have all ten, as
/// the complement to this number.
constexpr std::size_t kMostDigits = 10;
double Complement(int base) { return std::pow(base, static_cast<double>(kMostDigits)); }

/// The numbers that ten digits of a base can express are at least minus and less than this.
double Limit(int base) { return Complement(base) / 2; }

/// The number that the first argument spells, in the range of the base.
double SignedNumber(ArgumentReader& read, int base) {
  if (read.Any(0).boolean() != nullptr) read.Fail(ErrorCode::kValue);
  if (base == 10) return read.Whole(0);
  const std::u16string digits = read.Text(0);
  read.Require(digits.size() <= kMostDigits);
  const auto number = NumberIn(base, digits);
  read.Require(number.has_value());
  if (read.failed()) return 0.0;
  return *number < Limit(base) ? *number : *number - Complement(base);
}

/// BIN2DEC, DEC2HEX and so on. Negative numbers need no number of places.
template <int kFrom, int kTo>
Operand Convert(const BuiltInCall& call) {
  ArgumentReader read(call);
  const double number = SignedNumber(read, kFrom);
  if (read.failed()) return read.failure();
  if constexpr (kTo == 10) return Value(number);
  const bool is_padded = !read.IsOmitted(1) && number >= 0;
  const double places = read.IsOmitted(1) ? 1.0 : read.Whole(1);
  if (read.IsGiven(1) && read.Any(1).boolean() != nullptr) read.Fail(ErrorCode::kValue);
  read.Require(places >= 1 && places <= kMostDigits);
  read.Require(number >= -Limit(kTo) && number < Limit(kTo));
  if (read.failed()) return read.failure();
  std::u16string digits = DigitsIn(kTo, number < 0 ? number + Complement(kTo) : number);
  if (is_padded) {
    if (static_cast<double>(digits.size()) > places) return Value(ErrorCode::kNum);
    digits.insert(0, static_cast<std::size_t>(places) - digits.size(), u'0');
  }
  return TextResult(std::move(digits));
}

bool IsBase(double radix) { return radix >= 2 && radix <= 36; }

Operand Base(const BuiltInCall& call) {
  constexpr double kLargest = 9007199254740992.0;  // 2^53
  ArgumentReader read(call);
  const double number = read.Whole(0);
  const double radix = read.Whole(1);
  const double length = read.Whole(2, 0.0);
  read.Require(number >= 0 && number < kLargest && IsBase(radix) && length >= 0 && length <= 255);
  if (read.failed()) return read.failure();
  std::u16string digits = DigitsIn(static_cast<int>(radix), number);
  const auto wanted = static_cast<std::size_t>(length);
  if (digits.size() < wanted) digits.insert(0, wanted - digits.size(), u'0');
  return TextResult(std::move(digits));
}

Operand Decimal(const BuiltInCall& call) {
  constexpr std::size_t kLongestNumber = 255;
  ArgumentReader read(call);
  const std::u16string digits = read.Text(0);
  const double radix = read.Whole(1);
  read.Require(digits.size() <= kLongestNumber, ErrorCode::kValue);
  read.Require(IsBase(radix));
  if (read.failed()) return read.failure();
  const auto number = NumberIn(static_cast<int>(radix), digits);
  return number ? NumberValue(*number) : Value(ErrorCode::kNum);
}

constexpr BuiltInFunction kFunctions[] = {
    {u"BIN2DEC", 1, 1, "s", Convert<2, 10>},
    {u"BIN2OCT", 1, 2, "s", Convert<2, 8>},
    {u"BIN2HEX", 1, 2, "s", Convert<2, 16>},
    {u"OCT2DEC", 1, 1, "s", Convert<8, 10>},
    {u"OCT2BIN", 1, 2, "s", Convert<8, 2>},
    {u"OCT2HEX", 1, 2, "s", Convert<8, 16>},
    {u"HEX2DEC", 1, 1, "s", Convert<16, 10>},
    {u"HEX2BIN", 1, 2, "s", Convert<16, 2>},
    {u"HEX2OCT", 1, 2, "s", Convert<16, 8>},
    {u"DEC2BIN", 1, 2, "s", Convert<10, 2>},
    {u"DEC2OCT", 1, 2, "s", Convert<10, 8>},
    {u"DEC2HEX", 1, 2, "s", Convert<10, 16>},
    {u"BASE", 2, 3, "s", Base},
    {u"DECIMAL", 2, 2, "s", Decimal},
};

}  // namespace

std::span<const BuiltInFunction> BaseFunctions() { return kFunctions; }

}  // namespace zavhost
