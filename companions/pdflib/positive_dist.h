#pragma once

#include "companions/pdflib/pdf_dist.h"

namespace DistLib {

/// A distribution of positive values whose logarithm has a log-concave density, such as chi-square
/// and F. Its quantiles come from its tails: the logarithm of either tail is a concave function of
/// log x there, so that Newton's method converges from anywhere, and where the tail is a power of
/// x, as it is far out, in one step.
class PositiveDist : public PdfDist {
 protected:
  PositiveDist();

 private:
  Real QuantileOf(Real p) const final;
  Real UpperQuantileOf(Real q) const final;
  /// About the value whose normal score is z; greater than 0.
  virtual Real ValueNear(Real z) const = 0;

  Real Solve(Real probability, bool upper) const;
};

}  // namespace DistLib
