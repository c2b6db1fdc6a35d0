#include "distributions/discrete_dist.h"

#include <algorithm>
#include <stdexcept>

namespace DistLib {

Real DiscreteDist::QuantileOf(Real p) const { return Smallest(false, p); }
Real DiscreteDist::UpperQuantileOf(Real q) const { return Smallest(true, q); }

Real DiscreteDist::Smallest(bool upper, Real probability) const {
  const auto reached = [&](double k) {
    return upper ? UpperTail(k) <= probability : Cumulative(k) >= probability;
  };
  // Not reached at low, reached at high.
  double low = Lowest() - 1, high = Lowest(), stride = 1;
  while (!reached(high)) {
    if (high >= Highest() || high >= 0x1p53) throw std::overflow_error("no whole double");
    low = high;
    high = std::min({high + stride, Highest(), 0x1p53});
    stride *= 2;
  }
  while (high - low > 1) {
    const double middle = std::floor((low + high) / 2);
    (reached(middle) ? high : low) = middle;
  }
  return high;
}

}  // namespace DistLib
