#pragma once

#include <cstddef>

namespace DistLib {

/// The probability that the Anderson-Darling statistic of a sample of n values from its continuous
/// distribution is at least a, to about six decimals.
double AndersonDarlingUpperTail(std::size_t n, double a);

}  // namespace DistLib
