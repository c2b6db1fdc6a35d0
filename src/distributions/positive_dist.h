#pragma once

#include "distributions/pdf_dist.h"

namespace DistLib {

/// A distribution of positive values whose logarithm has a log-concave density, such as chi-square
/// and F. Its quantiles are computed from its tails. The logarithm of each tail is then a concave
/// function of log x, so Newton's method converges from any start, and in one step where the tail
/// is a power of x, as it is far out. Halley's method needs fewer tails near the solution.
class PositiveDist : public PdfDist {
 protected:
  PositiveDist();

 private:
  Real QuantileOf(Real p) const final;
  Real UpperQuantileOf(Real q) const final;
  /// Approximately the value whose normal score is z; greater than 0.
  virtual Real ValueNear(Real z) const = 0;
  /// The slope of log(x f(x)) over log x, f the density.
  virtual Real Growth(Real x) const = 0;

  Real Solve(Real probability, bool upper) const;
};

}  // namespace DistLib
