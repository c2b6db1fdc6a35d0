#pragma once

#include <span>

namespace zavrel {

/// The sums of the first four powers of deviations.
template <class Real>
struct PowerSums {
  Real s1 = 0, s2 = 0, s3 = 0, s4 = 0;

  void Add(Real d) {
    const Real d2 = d * d;
    s1 += d;
    s2 += d2;
    s3 += d2 * d;
    s4 += d2 * d2;
  }
};

/// The sums of the powers of x - center over the values that are numbers. Values at even and at odd
/// places are summed by themselves, in their order, and the two sums are added last: on every
/// processor the same additions.
PowerSums<double> SumPowers(std::span<const double> values, double center);
/// The same in extended precision.
PowerSums<long double> SumPowers(std::span<const double> values, long double center);

}  // namespace zavrel
