#pragma once

#include <cmath>

#include "distributions/pdf_dist.h"

namespace DistLib {

/// A distribution on whole numbers. Its quantiles are exact for the tails as doubles: the smallest
/// value whose probability reaches the one that is asked for.
class DiscreteDist : public PdfDist {
 protected:
  using PdfDist::PdfDist;

  // k is a whole number within the support.
  virtual Real ProbabilityOf(Real k) const = 0;
  virtual Real LowerTail(Real k) const = 0;
  virtual Real UpperTailBeyond(Real k) const = 0;

 private:
  Real DensityAt(Real x) const final { return x == std::floor(x) ? ProbabilityOf(x) : 0; }
  Real CumulativeAt(Real x) const final { return LowerTail(std::floor(x)); }
  Real UpperTailAt(Real x) const final { return UpperTailBeyond(std::floor(x)); }
  Real QuantileOf(Real p) const final;
  Real UpperQuantileOf(Real q) const final;

  Real Smallest(bool upper, Real probability) const;
};

}  // namespace DistLib
