#pragma once
// Tails of the normal distribution relative to its density: Mills' ratio. It stays in range
// wherever the tails themselves vanish.

#include "distributions/pdf_dist.h"

namespace DistLib {

/// The upper tail at z, divided by the density there.
Real MillsRatio(Real z);

/// The ratio at z less that at z + gap, gap >= 0.
Real MillsDifference(Real z, Real gap);

/// The probability from z >= 0 to z + width, divided by the density at z.
Real NormalStretch(Real z, Real width);

}  // namespace DistLib
