#pragma once

namespace zavrel {

enum class StandardizeStatus { kGiven = 0, kOverflow = 4, kNoSpread = 10 };

struct Standardized {
  StandardizeStatus status;
  double value;  // (x - mean) / standard deviation, regardless of the status
};

/// The number of standard deviations by which x exceeds the mean.
Standardized Standardize(double x, double mean, double standard_deviation);

}  // namespace zavrel
