#pragma once

#include <cmath>

#include "distributions/pdf_dist.h"

namespace DistLib {

/// A parameter between two ends, on a scale without ends: a logarithm where there is one end, a
/// logit where there are two.
class Scale {
 public:
  Scale() = default;
  Scale(double low, double high) : low_(low), high_(high) {}

  double low() const { return low_; }
  double high() const { return high_; }
  bool WithoutEnds() const { return !HasLow() && !HasHigh(); }

  double Value(double u) const {
    if (WithoutEnds()) return u;
    if (!HasHigh()) return low_ + std::exp(u);
    if (!HasLow()) return high_ - std::exp(-u);
    const double width = high_ - low_;
    return u < 0 ? low_ + width / (1 + std::exp(-u)) : high_ - width / (1 + std::exp(u));
  }
  double Position(double value) const {
    if (WithoutEnds()) return value;
    if (!HasHigh()) return std::log(value - low_);
    if (!HasLow()) return -std::log(high_ - value);
    return std::log((value - low_) / (high_ - value));
  }
  /// The derivative of the value.
  double Slope(double u) const {
    if (WithoutEnds()) return 1;
    if (!HasHigh()) return std::exp(u);
    if (!HasLow()) return std::exp(-u);
    const double share = 1 / (1 + std::exp(-std::fabs(u)));
    return (high_ - low_) * share * (1 - share);
  }
  /// A value strictly between the ends, this one if it is.
  double Inside(double value) const {
    const double nudge = 1e-3 * (HasLow() && HasHigh() ? high_ - low_ : 1 + std::fabs(value));
    if (value <= low_) return low_ + nudge;
    if (value >= high_) return high_ - nudge;
    return value;
  }

 private:
  bool HasLow() const { return std::isfinite(low_); }
  bool HasHigh() const { return std::isfinite(high_); }

  double low_ = -kInfinity;
  double high_ = kInfinity;
};

}  // namespace DistLib
