#pragma once
// The range of `means` standard normal values, from 2 to 200: the functions that the studentized
// range averages. In double precision; the relative errors are about means * 2e-16.
//
// Each type has the function At a width w, and RoughLog: within a few units of its logarithm, up to
// a constant, for finding where an integrand is highest.

#include "companions/pdflib/trapezoidal.h"

namespace DistLib {

/// The probability of w or less.
struct RangeLower {
  static constexpr bool kDensity = false;
  static double At(double w, int means, const Fineness& fineness);
  static double RoughLog(double w, int means);
};

/// The probability of more than w.
struct RangeUpper {
  static constexpr bool kDensity = false;
  static double At(double w, int means, const Fineness& fineness);
  static double RoughLog(double w, int means);
};

struct RangeDensity {
  static constexpr bool kDensity = true;
  static double At(double w, int means, const Fineness& fineness);
  /// Of w times the density.
  static double RoughLog(double w, int means);
};

}  // namespace DistLib
