#pragma once
// Parts of Stirling's formula, for products of large powers whose linear parts cancel (Loader,
// 2000, "Fast and accurate computation of binomial probabilities").

#include "companions/pdflib/distributions/pdf_dist.h"

namespace DistLib {

/// The remainder of Stirling's formula for the logarithm of the gamma function: log gamma(z) = (z -
/// 1/2) log z - z + log(2 pi) / 2 + this. z > 0.
Real StirlingRest(Real z);

/// log(ratio) - (ratio - 1), where `excess` is ratio - 1; never above 0.
Real LogBeyondLinear(Real ratio, Real excess);

/// The logarithm of y^a exp(-y) / gamma(a + 1): the probability of `a` where the mean is y.
Real LogPoisson(Real a, Real y);

}  // namespace DistLib
