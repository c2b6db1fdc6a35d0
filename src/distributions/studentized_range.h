#pragma once
// The studentized range: the range of independent normal values with the same mean, divided by an
// independent estimate of their standard deviation. A kernel: it is no PdfDist itself.

#include "distributions/pdf_dist.h"
#include "distributions/trapezoidal.h"

namespace DistLib {

/// The studentized range of `means` values, a whole number from 2 to 200. The estimate has `df`
/// degrees of freedom, 0.5 or more, fractions too; infinitely many stand for a known deviation.
/// Each tail is computed as such: its relative error is at most 1e-12 where it is 1e-15 or more.
///
/// All members throw std::domain_error for arguments outside the domain: q must be finite and at
/// least 0, a probability between 0 and 1, both excluded.
class StudentizedRange {
 public:
  StudentizedRange(double means, double df);

  Real Density(Real q) const;
  /// The probability of q or less.
  Real Cumulative(Real q) const;
  /// The probability of more than q.
  Real UpperTail(Real q) const;
  /// Throws std::overflow_error if the quantile is not in the range of doubles.
  Real Quantile(Real p) const;
  Real UpperQuantile(Real p) const;

 private:
  template <class Part>
  double PeakOf(double q) const;
  template <class Part>
  Real Mixture(Real q, const Fineness& fineness) const;
  Real Lower(Real q, const Fineness& fineness) const;
  template <class Tail>
  Real RootOf(Tail tail, int direction, Real p) const;
  Real LowerRoot(Real p) const;
  Real UpperRoot(Real p) const;

  int means_;
  double df_;
  Real scale_ = 0;  // of the density of the logarithm of the estimate
};

}  // namespace DistLib
