#include "distributions/discrete_dist.h"

#include <algorithm>

namespace DistLib {
namespace {

/// A whole number half-way, by size if the numbers are of different sizes.
double Between(double low, double high) {
  if (low > 0 && high > 4 * low) return std::floor(std::sqrt(low) * std::sqrt(high));
  return std::floor(low + (high - low) / 2);
}

}  // namespace

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
  const auto [centre, first_stride] = SearchStart();
  const double last = std::min(Highest(), std::numeric_limits<double>::max());
  double low = std::clamp(std::floor(static_cast<double>(centre)), Lowest(), last), high = low;
  double stride = std::max(1.0, std::floor(static_cast<double>(first_stride))), growth = 2;
  const auto grow = [&] { stride *= growth, growth *= 2; };
  // Outwards, until it is not reached at low and reached at high.
  if (reached(low)) {
    do {
      high = low;
      low -= stride;
      grow();
    } while (low >= Lowest() && reached(low));
    low = std::max(low, Lowest() - 1);
  } else {
    do {
      if (high >= last) return std::numeric_limits<Real>::infinity();  // of a heavy tail
      low = high;
      high = std::min(high + stride, last);
      grow();
    } while (!reached(high));
  }
  while (true) {
    const double middle = Between(low, high);
    if (middle <= low || middle >= high) return high;
    (reached(middle) ? high : low) = middle;
  }
}

}  // namespace DistLib
