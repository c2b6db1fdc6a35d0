#pragma once

namespace zavhost {

/// The number with 15 significant digits, so that 2.675 * 100 is the 267.5 that the user sees.
double AtFifteenDigits(double number);

}  // namespace zavhost
