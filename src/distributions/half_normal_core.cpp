#include <boost/math/special_functions/erf.hpp>

#include "distributions/cores.h"

namespace DistLib {

using std::numbers::sqrt2_v;

Real HalfNormalCore::Lower(Real x) { return boost::math::erf(x / sqrt2_v<Real>); }
Real HalfNormalCore::Upper(Real x) { return boost::math::erfc(x / sqrt2_v<Real>); }
Real HalfNormalCore::Quantile(Real p) { return sqrt2_v<Real> * boost::math::erf_inv(p); }
Real HalfNormalCore::UpperQuantile(Real q) {
  return q == 1 ? 0 : sqrt2_v<Real> * boost::math::erfc_inv(q);
}

}  // namespace DistLib
