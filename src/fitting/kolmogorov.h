#pragma once

#include <cstddef>

namespace DistLib {

/// The probability that Kolmogorov's two-sided distance of a sample of n values from its continuous
/// distribution is at least d. Exact up to 500 values and far out; between, at least five digits.
double KolmogorovUpperTail(std::size_t n, double d);

}  // namespace DistLib
