#pragma once
// The standard normal distribution, the same to the last bit on every system.

namespace zavrel {

/// The probability that a standard normal variable exceeds z, computed as a tail and not as a
/// difference from 1. It is accurate to 5 units in the last place at every z, down to the smallest
/// doubles (beyond z = 38.57 it is 0).
double NormalUpperTail(double z);

/// The standard normal quantile of p: -infinity at 0, infinity at 1, not-a-number outside. Relative
/// error about 1e-15. M. J. Wichura, "Algorithm AS 241: The percentage points of the normal
/// distribution", Applied Statistics 37 (1988).
double NormalQuantile(double p);

}  // namespace zavrel
