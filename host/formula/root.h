#pragma once

#include <functional>

namespace zavhost {

/// The interest rate above -1 at which a value is 0: by the secant method from a guess, or, where
/// that fails, by bisection between the nearest rates of different signs. Not a number if there is
/// none.
double RateRoot(const std::function<double(double)>& value, double guess);

}  // namespace zavhost
