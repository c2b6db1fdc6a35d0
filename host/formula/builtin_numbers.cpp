#include <charconv>
#include <cmath>
#include <numbers>

#include "host/formula/builtin_groups.h"
#include "host/formula/coercion.h"

namespace zavhost {
namespace {

/// A function of one number; a result that is not finite becomes #NUM!.
template <double (*kFunction)(double)>
Operand OfNumber(const BuiltInCall& call) {
  const Converted<double> x = ToNumber(ScalarArgument(call, 0));
  return x.error ? Value(*x.error) : NumberValue(kFunction(x.value));
}

/// A function of two numbers; an error in the first argument takes precedence.
template <Value (*kFunction)(double, double)>
Operand OfTwoNumbers(const BuiltInCall& call) {
  const Converted<double> x = ToNumber(ScalarArgument(call, 0));
  if (x.error) return Value(*x.error);
  const Converted<double> y = ToNumber(ScalarArgument(call, 1));
  return y.error ? Value(*y.error) : kFunction(x.value, y.value);
}

double Abs(double x) { return std::fabs(x); }
double Sqrt(double x) { return std::sqrt(x); }
double Exp(double x) { return std::exp(x); }
double Ln(double x) { return std::log(x); }
double Log10(double x) { return std::log10(x); }
double Int(double x) { return std::floor(x); }
double Sign(double x) { return x > 0 ? 1.0 : x < 0 ? -1.0 : 0.0; }

Value Power(double base, double exponent) { return ApplyBinary(Operator::kPower, base, exponent); }

/// The remainder with the sign of the divisor.
Value Mod(double number, double divisor) {
  if (divisor == 0.0) return ErrorCode::kDiv0;
  const double remainder = std::fmod(number, divisor);
  const bool has_other_sign = remainder != 0.0 && (remainder < 0.0) != (divisor < 0.0);
  return NumberValue(has_other_sign ? remainder + divisor : remainder);
}

Operand Log(const BuiltInCall& call) {
  const Converted<double> x = ToNumber(ScalarArgument(call, 0));
  if (x.error) return Value(*x.error);
  if (call.arguments.size() < 2) return NumberValue(std::log10(x.value));
  const Converted<double> base = ToNumber(ScalarArgument(call, 1));
  if (base.error) return Value(*base.error);
  if (x.value <= 0.0 || base.value <= 0.0) return Value(ErrorCode::kNum);
  if (base.value == 1.0) return Value(ErrorCode::kDiv0);
  if (base.value == 10.0) return NumberValue(std::log10(x.value));
  return NumberValue(std::log(x.value) / std::log(base.value));
}

/// The number with 15 significant digits, so that 2.675 * 100 is the 267.5 that the user sees.
double AtFifteenDigits(double number) {
  char shown[32];
  const auto end = std::to_chars(shown, shown + 32, number, std::chars_format::scientific, 14);
  std::from_chars(shown, end.ptr, number);
  return number;
}

/// Rounds at a decimal place (negative: left of the point) by `rounding` of the scaled number.
template <double (*kRounding)(double)>
Value RoundAt(double number, double places) {
  places = std::trunc(places);
  if (places > 308.0 || number == 0.0) return number;
  if (places < -308.0) return 0.0;
  const double scale = std::pow(10.0, std::fabs(places));
  const double scaled = places >= 0 ? number * scale : number / scale;
  if (std::fabs(scaled) >= 1e15 && places >= 0) return number;  // there are no digits to round
  const double rounded = kRounding(AtFifteenDigits(scaled));
  return NumberValue(places >= 0 ? rounded / scale : rounded * scale);
}

double AwayFromZero(double x) { return x < 0 ? std::floor(x) : std::ceil(x); }
double HalfAwayFromZero(double x) { return std::round(x); }
double TowardsZero(double x) { return std::trunc(x); }

Operand Pi(const BuiltInCall&) { return Value(std::numbers::pi); }

constexpr BuiltInFunction kFunctions[] = {
    {u"ABS", 1, 1, "s", OfNumber<Abs>},
    {u"SQRT", 1, 1, "s", OfNumber<Sqrt>},
    {u"EXP", 1, 1, "s", OfNumber<Exp>},
    {u"LN", 1, 1, "s", OfNumber<Ln>},
    {u"LOG10", 1, 1, "s", OfNumber<Log10>},
    {u"LOG", 1, 2, "s", Log},
    {u"POWER", 2, 2, "s", OfTwoNumbers<Power>},
    {u"ROUND", 2, 2, "s", OfTwoNumbers<RoundAt<HalfAwayFromZero>>},
    {u"ROUNDUP", 2, 2, "s", OfTwoNumbers<RoundAt<AwayFromZero>>},
    {u"ROUNDDOWN", 2, 2, "s", OfTwoNumbers<RoundAt<TowardsZero>>},
    {u"INT", 1, 1, "s", OfNumber<Int>},
    {u"MOD", 2, 2, "s", OfTwoNumbers<Mod>},
    {u"SIGN", 1, 1, "s", OfNumber<Sign>},
    {u"PI", 0, 0, "s", Pi},
};

}  // namespace

std::span<const BuiltInFunction> NumberFunctions() { return kFunctions; }

}  // namespace zavhost
