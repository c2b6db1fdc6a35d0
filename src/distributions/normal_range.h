#pragma once
// The range of `means` standard normal values, from 2 to 200: the functions that the studentized
// range averages. In double precision; the relative errors are about means * 2e-16.
//
// Each type is made for many widths w, at which At gives its value. RoughLog is within a few units
// of the logarithm of that, up to a constant, for finding where an integrand is highest.

#include <array>

#include "distributions/trapezoidal.h"

namespace DistLib {

/// The probability of w or less.
class RangeLower {
 public:
  static constexpr bool kDensity = false;

  RangeLower(int means, const Fineness& fineness) : means_(means), fineness_(fineness) {}
  double At(double w) const;
  static double RoughLog(double w, int means);

 private:
  int means_;
  Fineness fineness_;
};

/// The probability of more than w.
class RangeUpper {
 public:
  static constexpr bool kDensity = false;

  RangeUpper(int means, const Fineness& fineness);
  double At(double w);
  static double RoughLog(double w, int means);

 private:
  /// What does not depend on w, where the smallest value is z.
  struct Node {
    double above;   // the probability above z
    double weight;  // the density at z times the power of that for the others; 0 if not computed
  };

  Node NodeAt(double index);
  Node Computed(double z) const;

  int means_;
  Fineness fineness_;
  double step_;
  std::array<Node, 512> nodes_{};  // at multiples of the step
};

class RangeDensity {
 public:
  static constexpr bool kDensity = true;

  RangeDensity(int means, const Fineness& fineness) : means_(means), fineness_(fineness) {}
  double At(double w) const;
  /// Of w times the density.
  static double RoughLog(double w, int means);

 private:
  int means_;
  Fineness fineness_;
};

}  // namespace DistLib
