#pragma once

#include "distributions/pdf_dist.h"

namespace DistLib {

/// The probability that a Poisson variable is at most k, and that it is greater; k is a whole
/// number from -1.
Real PoissonLower(Real k, Real mean);
Real PoissonUpper(Real k, Real mean);

}  // namespace DistLib
