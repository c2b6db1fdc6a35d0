#include "companions/pdflib/distributions/discrete_dist.h"

#include <algorithm>
#include <stdexcept>

namespace DistLib {

Real DiscreteDist::QuantileOf(Real p) const { return Smallest(false, p); }
Real DiscreteDist::UpperQuantileOf(Real q) const { return Smallest(true, q); }

/// Near 1, rounding a tail to a Real and then to a double can give another double than rounding it
/// once: where the Real is half-way between two doubles, what it leaves to 1 decides. Quantiles of
/// wide distributions show the difference.
Real DiscreteDist::Tail(bool upper, Real k) const {
  const auto tail = [&](bool above) { return above ? UpperTailBeyond(k) : LowerTail(k); };
  constexpr Real kHalf = 0x1p-54L, kDoubt = 0x1p-61L;
  const Real value = tail(upper), rounded = static_cast<double>(value);
  if (value < 0.5L || std::fabs(std::fabs(value - rounded) - kHalf) > kDoubt) return value;
  const Real above_rounded = (1 - rounded) - tail(!upper);
  if (std::fabs(above_rounded) <= kHalf) return rounded;
  return rounded + std::copysign(2 * kHalf, above_rounded);
}

Real DiscreteDist::Smallest(bool upper, Real probability) const {
  const auto reached = [&](double k) {
    return upper ? UpperTail(k) <= probability : Cumulative(k) >= probability;
  };
  const Start start = SearchStart();
  const double last = std::min(Highest(), std::numeric_limits<double>::max());
  double stride = std::max(1.0, std::floor(static_cast<double>(start.stride)));
  double low = std::clamp(std::floor(static_cast<double>(start.centre)), Lowest(), last);
  double high = low;
  // Outwards, until it is not reached at low and reached at high.
  if (reached(low)) {
    do {
      high = low;
      low -= stride;
      stride *= 2;
    } while (low >= Lowest() && reached(low));
    low = std::max(low, Lowest() - 1);
  } else {
    do {
      if (high >= last) throw std::overflow_error("no double");
      low = high;
      high = std::min(high + stride, last);
      stride *= 2;
    } while (!reached(high));
  }
  while (true) {
    const double middle = std::floor(low + (high - low) / 2);
    if (middle <= low || middle >= high) return high;
    (reached(middle) ? high : low) = middle;
  }
}

}  // namespace DistLib
