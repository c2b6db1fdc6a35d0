#include "companions/pdflib/distributions/stirling.h"

#include <boost/math/special_functions/log1p.hpp>
#include <cmath>
#include <limits>
#include <numbers>

namespace DistLib {

// Abramowitz and Stegun 6.1.41.
Real StirlingRest(Real z) {
  Real from_recurrence = 0;
  for (; z < 16; z += 1) from_recurrence += (z + 0.5L) * std::log1p(1 / z) - 1;
  const Real s = 1 / (z * z);
  const Real series =
      1 / 12.0L -
      s * (1 / 360.0L -
           s * (1 / 1260.0L -
                s * (1 / 1680.0L -
                     s * (1 / 1188.0L -
                          s * (691 / 360360.0L - s * (1 / 156.0L - s * 3617 / 122400.0L))))));
  return from_recurrence + series / z;
}

Real LogBeyondLinear(Real ratio, Real excess) {
  return std::fabs(excess) < 0.5L ? boost::math::log1pmx(excess) : std::log(ratio) - excess;
}

Real LogPoisson(Real a, Real y) {
  if (a == 0) return -y;
  if (y == 0) return -std::numeric_limits<Real>::infinity();
  return a * LogBeyondLinear(y / a, (y - a) / a) - StirlingRest(a) -
         std::log(2 * std::numbers::pi_v<Real> * a) / 2;
}

}  // namespace DistLib
