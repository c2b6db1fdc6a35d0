#pragma once

namespace zavrel {

enum class StandardizeStatus { kGiven = 0, kOverflow = 4, kNoSpread = 10 };

struct Standardized {
  StandardizeStatus status;
  double value;  // (x - mean) / standard deviation, whatever the status says
};

/// How many standard deviations x lies above the mean.
Standardized Standardize(double x, double mean, double standard_deviation);

}  // namespace zavrel
