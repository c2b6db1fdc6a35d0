#pragma once

#include <cmath>
#include <limits>

namespace zavrel {

/// What the first pass over a series finds: the sum in the order of the values, the least and the
/// greatest of them. Whoever has the values in hand one by one can gather it meanwhile, in a
/// FloatingPointScope: an addition takes longer than a copy, but not longer than both together.
struct RunningSum {
  double sum = 0;
  double minimum = std::numeric_limits<double>::infinity();
  double maximum = -std::numeric_limits<double>::infinity();

  void Add(double x) {
    minimum = x < minimum ? x : minimum;
    maximum = x > maximum ? x : maximum;
    sum += x;
  }
  /// False when something was not a number or not finite, or the sum overflowed.
  bool IsFinite() const { return std::isfinite(sum); }
};

}  // namespace zavrel
