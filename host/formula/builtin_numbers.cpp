// Elementary functions, rounding and random numbers.

#include <cmath>
#include <numbers>

#include "host/formula/builtin_groups.h"
#include "host/formula/coercion.h"
#include "host/formula/compensated_sum.h"
#include "host/formula/number_function.h"
#include "host/formula/rounding.h"
#include "host/formula/special_functions.h"

namespace zavhost {
namespace {

double Abs(double x) { return std::fabs(x); }
double Sqrt(double x) { return std::sqrt(x); }
double SqrtPi(StrictNumber x) { return std::sqrt(x * std::numbers::pi); }
double Exp(double x) { return std::exp(x); }
double Ln(double x) { return std::log(x); }
double Log10(double x) { return std::log10(x); }
double Sign(double x) { return x > 0 ? 1.0 : x < 0 ? -1.0 : 0.0; }
double Pi() { return std::numbers::pi; }

Value Power(double base, double exponent) { return ApplyBinary(Operator::kPower, base, exponent); }

Value Log(double x, double base) {
  if (x <= 0.0 || base <= 0.0) return ErrorCode::kNum;
  if (base == 1.0) return ErrorCode::kDiv0;
  if (base == 10.0) return NumberValue(std::log10(x));
  if (base == 2.0) return NumberValue(std::log2(x));
  return NumberValue(std::log(x) / std::log(base));
}

/// The remainder with the sign of the divisor.
Value Mod(double number, double divisor) {
  // The number of whole divisors that Excel counts.
  constexpr double kLargestQuotient = 1125899906842624.0;
  if (divisor == 0.0) return ErrorCode::kDiv0;
  if (std::fabs(number / divisor) >= kLargestQuotient) return ErrorCode::kNum;
  const double remainder = std::fmod(number, divisor);
  const bool has_other_sign = remainder != 0.0 && (remainder < 0.0) != (divisor < 0.0);
  return NumberValue(has_other_sign ? remainder + divisor : remainder);
}

Value Quotient(StrictNumber number, StrictNumber divisor) {
  if (divisor == 0.0) return ErrorCode::kDiv0;
  return NumberValue(std::trunc(number / divisor));
}

double AwayFromZero(double x) { return x < 0 ? std::floor(x) : std::ceil(x); }
double HalfAwayFromZero(double x) { return std::round(x); }
double TowardsZero(double x) { return std::trunc(x); }
double Down(double x) { return std::floor(x); }
double Up(double x) { return std::ceil(x); }

/// Rounds what the user sees of a number that has decimal places at all.
template <double (*kRounding)(double)>
double Rounded(double number) {
  return kRounding(std::fabs(number) < 1e15 ? AtFifteenDigits(number) : number);
}

/// Rounds at a decimal place (negative: left of the point) by `kRounding` of the scaled number.
template <double (*kRounding)(double)>
double RoundAt(double number, Whole places) {
  if (places > 308.0 || number == 0.0) return number;
  if (places < -308.0) return 0.0;
  const double scale = std::pow(10.0, std::fabs(places));
  const double scaled = places >= 0 ? number * scale : number / scale;
  if (std::fabs(scaled) >= 1e15 && places >= 0) return number;  // there are no digits to round
  const double rounded = Rounded<kRounding>(scaled);
  return places >= 0 ? rounded / scale : rounded * scale;
}

/// The multiple of `step` next to the number.
template <double (*kRounding)(double)>
double ToMultiple(double number, double step) {
  if (number == 0.0 || step == 0.0) return 0.0;
  const double quotient = number / step;
  return std::isfinite(quotient) ? Rounded<kRounding>(quotient) * step : number;
}

double MRound(StrictNumber number, StrictNumber multiple) {
  if (number == 0.0 || multiple == 0.0) return 0.0;
  if ((number < 0.0) != (multiple < 0.0)) return kNum;
  return std::round(number / multiple) * multiple;
}

double Even(double x) { return 2.0 * AwayFromZero(x / 2.0); }
double Odd(double x) {
  const double size = 2.0 * std::ceil(std::fmax(std::fabs(x) - 1.0, 0.0) / 2.0) + 1.0;
  return std::copysign(size, x);
}

/// CEILING: a negative number may have a multiple of either sign, a positive one only its own.
double Ceiling(double number, double significance) {
  return number > 0.0 && significance < 0.0 ? kNum : ToMultiple<Up>(number, significance);
}
Value Floor(double number, double significance) {
  if (number != 0.0 && significance == 0.0) return ErrorCode::kDiv0;
  if (number > 0.0 && significance < 0.0) return ErrorCode::kNum;
  return NumberValue(ToMultiple<Down>(number, significance));
}

/// The forms for which the sign of the significance does not matter.
template <double (*kRounding)(double)>
double Precise(double number, double significance) {
  return ToMultiple<kRounding>(number, std::fabs(significance));
}
/// CEILING.MATH and FLOOR.MATH: with a mode, the directions of negative numbers are exchanged.
template <double (*kRounding)(double), double (*kOfNegative)(double)>
Operand Math(const BuiltInCall& call) {
  ArgumentReader read(call);
  const double number = read.Number(0);
  const double step = read.IsOmitted(1) ? 1.0 : std::fabs(read.Number(1));
  const bool has_mode = read.Number(2, 0.0) != 0.0;
  if (read.failed()) return read.failure();
  const bool is_exchanged = has_mode && number < 0.0;
  return NumberValue(is_exchanged ? ToMultiple<kOfNegative>(number, step)
                                  : ToMultiple<kRounding>(number, step));
}

double Delta(StrictNumber a, StrictNumber b) { return a == b ? 1.0 : 0.0; }
double GeStep(StrictNumber x, StrictNumber step) { return x >= step ? 1.0 : 0.0; }

double ErfPrecise(double x) { return special::Erf(x); }
double Erfc(StrictNumber x) { return special::Erfc(x); }
/// The integral from one limit to the other, without cancellation where both are far out.
double ErfBetween(double lower, double upper) {
  if (lower > 0.5 && upper > 0.5) return special::Erfc(lower) - special::Erfc(upper);
  if (lower < -0.5 && upper < -0.5) return special::Erfc(-upper) - special::Erfc(-lower);
  return special::Erf(upper) - special::Erf(lower);
}
Operand Erf(const BuiltInCall& call) {
  return call.arguments.size() == 1 ? Of<ErfPrecise>(call) : Of<ErfBetween>(call);
}

Operand SeriesSum(const BuiltInCall& call) {
  ArgumentReader read(call);
  const double x = read.Number(0);
  const double first_power = read.Number(1);
  const double step = read.Number(2);
  const ArrayPtr coefficients = read.Array(3, RangeExtent::kUsed);
  CompensatedSum sum;
  double power = first_power;
  for (const Value& value : coefficients->values) {
    const Converted<double> coefficient = ToNumber(value);
    if (coefficient.error) read.Fail(*coefficient.error);
    if (coefficient.value != 0.0) sum.Add(coefficient.value * std::pow(x, power));
    power += step;
  }
  return read.failed() ? read.failure() : NumberValue(sum.value());
}

Operand Rand(const BuiltInCall& call) { return Value(call.context.Random()); }

Operand RandBetween(const BuiltInCall& call) {
  ArgumentReader read(call);
  const double bottom = std::ceil(read.Number(0));
  const double top = std::floor(read.Number(1));
  read.Require(bottom <= top);
  if (read.failed()) return read.failure();
  const double width = top - bottom + 1.0;
  return NumberValue(std::fmin(bottom + std::floor(call.context.Random() * width), top));
}

constexpr BuiltInFunction kFunctions[] = {
    {u"ABS", 1, 1, "s", Of<Abs>},
    {u"SQRT", 1, 1, "s", Of<Sqrt>},
    {u"SQRTPI", 1, 1, "s", Of<SqrtPi>},
    {u"EXP", 1, 1, "s", Of<Exp>},
    {u"LN", 1, 1, "s", Of<Ln>},
    {u"LOG10", 1, 1, "s", Of<Log10>},
    {u"LOG", 1, 2, "s", Of<Log, 10>},
    {u"POWER", 2, 2, "s", Of<Power>},
    {u"SIGN", 1, 1, "s", Of<Sign>},
    {u"PI", 0, 0, "s", Of<Pi>},
    {u"MOD", 2, 2, "s", Of<Mod>},
    {u"QUOTIENT", 2, 2, "s", Of<Quotient>},
    {u"ROUND", 2, 2, "s", Of<RoundAt<HalfAwayFromZero>>},
    {u"ROUNDUP", 2, 2, "s", Of<RoundAt<AwayFromZero>>},
    {u"ROUNDDOWN", 2, 2, "s", Of<RoundAt<TowardsZero>>},
    {u"TRUNC", 1, 2, "s", Of<RoundAt<TowardsZero>, 0>},
    {u"INT", 1, 1, "s", Of<Down>},
    {u"MROUND", 2, 2, "s", Of<MRound>},
    {u"EVEN", 1, 1, "s", Of<Even>},
    {u"ODD", 1, 1, "s", Of<Odd>},
    {u"CEILING", 2, 2, "s", Of<Ceiling>},
    {u"FLOOR", 2, 2, "s", Of<Floor>},
    {u"CEILING.MATH", 1, 3, "s", Math<Up, Down>},
    {u"FLOOR.MATH", 1, 3, "s", Math<Down, Up>},
    {u"CEILING.PRECISE", 1, 2, "s", Of<Precise<Up>, 1>},
    {u"ISO.CEILING", 1, 2, "s", Of<Precise<Up>, 1>},
    {u"FLOOR.PRECISE", 1, 2, "s", Of<Precise<Down>, 1>},
    {u"DELTA", 1, 2, "s", Of<Delta, 0>},
    {u"GESTEP", 1, 2, "s", Of<GeStep, 0>},
    {u"ERF", 1, 2, "s", Erf},
    {u"ERF.PRECISE", 1, 1, "s", Of<ErfPrecise>},
    {u"ERFC", 1, 1, "s", Of<Erfc>},
    {u"ERFC.PRECISE", 1, 1, "s", Of<Erfc>},
    {u"SERIESSUM", 4, 4, "sssa", SeriesSum},
    {u"RAND", 0, 0, "s", Rand},
    {u"RANDBETWEEN", 2, 2, "s", RandBetween},
};

}  // namespace

std::span<const BuiltInFunction> NumberFunctions() { return kFunctions; }

}  // namespace zavhost
