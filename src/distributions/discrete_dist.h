#pragma once

#include <cmath>

#include "distributions/stirling.h"

namespace DistLib {

/// A distribution on whole numbers. Its quantiles are exact for the tails as doubles: the smallest
/// value whose probability reaches the one that is asked for; beyond 2^53, the smallest double.
class DiscreteDist : public PdfDist {
 protected:
  using PdfDist::PdfDist;

  /// Where the search for a quantile starts, and its first stride.
  struct Start {
    Real centre;
    Real stride;
  };
  /// Far from the centre of a wide distribution, the search from its lowest value would be long.
  virtual Start SearchStart() const { return {Lowest(), 1}; }
  static Start StartOf(const DistLib::Moments& moments) {
    return {*moments.mean, std::sqrt(*moments.variance)};
  }
  // k is a whole number within the support.
  virtual Scaled ProbabilityOf(Real k) const = 0;
  virtual Real LowerTail(Real k) const = 0;
  virtual Real UpperTailBeyond(Real k) const = 0;

  /// The whole number next to the mean as a double: 5 trials with 0.3 have the mean 1.5, although
  /// the double 0.3 is a little less.
  static Real WholeMean(Real mean) { return std::floor(static_cast<double>(mean) + 0.5L); }

 private:
  Real DensityAt(Real x) const final { return x == std::floor(x) ? ProbabilityOf(x).Value() : 0; }
  Real LogDensityAt(Real x) const final {
    return x == std::floor(x) ? ProbabilityOf(x).Log() : -std::numeric_limits<Real>::infinity();
  }
  Real CumulativeAt(Real x) const final { return Tail(false, std::floor(x)); }
  Real UpperTailAt(Real x) const final { return Tail(true, std::floor(x)); }
  Real QuantileOf(Real p) const final;
  Real UpperQuantileOf(Real q) const final;

  Real Tail(bool upper, Real k) const;
  Real Smallest(bool upper, Real probability) const;
};

}  // namespace DistLib
