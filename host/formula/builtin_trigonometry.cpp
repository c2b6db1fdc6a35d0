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

double Sin(double x) { return std::sin(x); }
double Cos(double x) { return std::cos(x); }
double Tan(double x) { return std::tan(x); }
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
