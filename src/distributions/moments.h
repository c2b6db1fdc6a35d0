#pragma once
// Moments from the forms in which textbooks give them.

#include <functional>

#include "distributions/pdf_dist.h"

namespace DistLib {

/// From E[Y^r] for r = 1 to 4, each of which exists where r < `limit`. Central moments that have
/// lost nearly all digits by cancellation are empty.
Moments FromRawMoments(const std::function<Real(int r)>& raw, Real limit, std::optional<Real> mode);

/// From the first four cumulants.
Moments FromCumulants(const Real (&cumulants)[4], std::optional<Real> mode);

/// The moments of location + scale Y, scale > 0.
Moments Moved(Moments moments, Real location, Real scale);

/// Where a function with a single peak between low and high has it; half the digits are right.
Real PeakBetween(Real low, Real high, const std::function<Real(Real)>& function);

}  // namespace DistLib
