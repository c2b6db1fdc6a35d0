#pragma once
// Distributions on an interval, of which both ends' distances are kept: an end may be near 0, where
// the distance is known to more digits than the position within the interval.

#include "distributions/catalogue.h"
#include "distributions/cores.h"

namespace DistLib {

/// A value as its distances from both ends.
struct Inside {
  Real from_low;
  Real from_high;
};

class BoundedDist : public PdfDist {
 protected:
  BoundedDist(double low, double high)
      : PdfDist(low, high), low_(low), high_(high), width_(high_ - low_) {}

  Real low() const { return low_; }
  Real high() const { return high_; }
  Real width() const { return width_; }
  Inside At(Real x) const { return {x - low_, high_ - x}; }
  /// The value at this distance from the nearer end.
  Real Value(const Inside& inside) const {
    return inside.from_low <= inside.from_high ? low_ + inside.from_low : high_ - inside.from_high;
  }

 private:
  Real low_;
  Real high_;
  Real width_;
};

}  // namespace DistLib
