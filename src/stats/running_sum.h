#pragma once

#include <cmath>
#include <limits>

namespace zavrel {

/// The results of the first pass over a series: the sum in the order of the values, the minimum and
/// the maximum. Code that copies the values one by one can collect them on the way, in a
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
  /// False if a value was not a number or not finite, or the sum overflowed.
  bool IsFinite() const { return std::isfinite(sum); }
};

}  // namespace zavrel
