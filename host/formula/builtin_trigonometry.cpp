// Circular and hyperbolic functions.

#include <cmath>
#include <numbers>

#include "host/formula/builtin_groups.h"
#include "host/formula/coercion.h"
#include "host/formula/number_function.h"

namespace zavhost {
namespace {

/// Excel's circular functions, and some of the others, take angles below 2^27 only.
template <double (*kFunction)(double)>
double OfAngle(double x) {
  constexpr double kLargestAngle = 134217728.0;
  return std::fabs(x) < kLargestAngle ? kFunction(x) : kNum;
}

/// The reciprocal; of a function that is 0, #DIV/0!.
template <double (*kFunction)(double)>
Value Reciprocal(double x) {
  const double denominator = kFunction(x);
  if (denominator == 0.0) return ErrorCode::kDiv0;
  return std::isnan(denominator) ? Value(ErrorCode::kNum) : NumberValue(1.0 / denominator);
}

/// An angle as a number of right angles and a rest of at most half a right angle.
struct ReducedAngle {
  int quadrant;  // 0 to 3
  double rest;
};

/// Exact reduction of angles below 2^27 (Cody and Waite, Software Manual for the Elementary
/// Functions, 1980). C libraries reduce by different approximations of pi: that for Windows leaves
/// six digits of sin(pi).
ReducedAngle Reduced(double x) {
  // A right angle in parts of 25 bits, so that their products with a number below 2^27 are exact.
  constexpr double kRightAngle[] = {0x1.921fb5p+0, 0x1.110b46p-26, 0x1.1a626p-54,
                                    0x1.98a2ep-77, 0x1.b839ap-104, 0x1.29024cp-127};
  const double count = std::nearbyint(x * (2.0 / std::numbers::pi));
  double rest = x;
  double lost = 0.0;  // what the differences lose to rounding
  for (const double part : kRightAngle) {
    const double step = count * part;
    const double less = rest - step;
    const double taken = rest - less;
    lost += (rest - (less + taken)) + (taken - step);
    rest = less;
  }
  return {static_cast<int>(static_cast<long long>(count) & 3), rest + lost};
}

/// The sine of an angle and a number of right angles.
double SinOf(const ReducedAngle& angle, int right_angles) {
  const int quadrant = (angle.quadrant + right_angles) & 3;
  const double size = quadrant % 2 == 0 ? std::sin(angle.rest) : std::cos(angle.rest);
  return quadrant < 2 ? size : -size;
}

double Sin(double x) { return SinOf(Reduced(x), 0); }
double Cos(double x) { return SinOf(Reduced(x), 1); }
double Tan(double x) {
  const ReducedAngle angle = Reduced(x);
  const double tangent = std::tan(angle.rest);
  return angle.quadrant % 2 == 0 ? tangent : -1.0 / tangent;
}
double Asin(double x) { return std::asin(x); }
double Acos(double x) { return std::acos(x); }
double Atan(double x) { return std::atan(x); }
double Acot(double x) {
  if (x == 0.0) return std::numbers::pi / 2.0;
  return x > 0.0 ? std::atan(1.0 / x) : std::numbers::pi + std::atan(1.0 / x);
}
Value Atan2(double x, double y) {
  if (x == 0.0 && y == 0.0) return ErrorCode::kDiv0;
  return NumberValue(std::atan2(y, x));
}

double Sinh(double x) { return std::sinh(x); }
double Cosh(double x) { return std::cosh(x); }
double Tanh(double x) { return std::tanh(x); }
double Asinh(double x) { return std::asinh(x); }
double Acosh(double x) { return std::acosh(x); }
double Atanh(double x) { return std::atanh(x); }
double Acoth(double x) { return std::fabs(x) > 1.0 ? std::atanh(1.0 / x) : kNum; }

double Degrees(double x) { return x * (180.0 / std::numbers::pi); }
double Radians(double x) { return x * (std::numbers::pi / 180.0); }

constexpr BuiltInFunction kFunctions[] = {
    {u"SIN", 1, 1, "s", Of<OfAngle<Sin>>},
    {u"COS", 1, 1, "s", Of<OfAngle<Cos>>},
    {u"TAN", 1, 1, "s", Of<OfAngle<Tan>>},
    {u"CSC", 1, 1, "s", Of<Reciprocal<OfAngle<Sin>>>},
    {u"SEC", 1, 1, "s", Of<Reciprocal<OfAngle<Cos>>>},
    {u"COT", 1, 1, "s", Of<Reciprocal<OfAngle<Tan>>>},
    {u"ASIN", 1, 1, "s", Of<Asin>},
    {u"ACOS", 1, 1, "s", Of<Acos>},
    {u"ATAN", 1, 1, "s", Of<Atan>},
    {u"ACOT", 1, 1, "s", Of<Acot>},
    {u"ATAN2", 2, 2, "s", Of<Atan2>},
    {u"SINH", 1, 1, "s", Of<Sinh>},
    {u"COSH", 1, 1, "s", Of<Cosh>},
    {u"TANH", 1, 1, "s", Of<Tanh>},
    {u"CSCH", 1, 1, "s", Of<Reciprocal<OfAngle<Sinh>>>},
    {u"SECH", 1, 1, "s", Of<Reciprocal<OfAngle<Cosh>>>},
    {u"COTH", 1, 1, "s", Of<Reciprocal<OfAngle<Tanh>>>},
    {u"ASINH", 1, 1, "s", Of<Asinh>},
    {u"ACOSH", 1, 1, "s", Of<Acosh>},
    {u"ATANH", 1, 1, "s", Of<Atanh>},
    {u"ACOTH", 1, 1, "s", Of<Acoth>},
    {u"DEGREES", 1, 1, "s", Of<Degrees>},
    {u"RADIANS", 1, 1, "s", Of<Radians>},
};

}  // namespace

std::span<const BuiltInFunction> TrigonometryFunctions() { return kFunctions; }

}  // namespace zavhost
