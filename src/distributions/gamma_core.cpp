#include "distributions/gamma_core.h"

#include <boost/math/special_functions/digamma.hpp>
#include <boost/math/special_functions/gamma.hpp>

namespace DistLib {

Real GammaCore::LogDensity(Real x) const {
  if (x == 0) return shape == 1 ? 0 : (shape - 1) * -kRealInfinity;
  if (!std::isfinite(x)) return -kRealInfinity;
  const Real density = boost::math::gamma_p_derivative(shape, x);
  if (density > 0 && std::isfinite(density)) return std::log(density);
  return (shape - 1) * std::log(x) - x - boost::math::lgamma(shape);
}

Real GammaCore::Lower(Real x) const {
  return std::isfinite(x) ? boost::math::gamma_p(shape, x) : 1;
}
Real GammaCore::Upper(Real x) const {
  return std::isfinite(x) ? boost::math::gamma_q(shape, x) : 0;
}
Real GammaCore::Quantile(Real p) const { return boost::math::gamma_p_inv(shape, p); }
Real GammaCore::UpperQuantile(Real q) const { return boost::math::gamma_q_inv(shape, q); }

Real GammaCore::LogDensityNear0(Real log_x) const {
  return (shape - 1) * log_x - boost::math::lgamma(shape);
}
Real GammaCore::LowerNear0(Real log_x) const {
  return std::exp(shape * log_x - boost::math::lgamma(1 + shape));
}
Real GammaCore::LogQuantileNear0(Real log_p) const {
  return (log_p + boost::math::lgamma(1 + shape)) / shape;
}

Real GammaCore::RawMoment(Real power) const {
  return 1 / boost::math::tgamma_delta_ratio(shape, power);
}
Real GammaCore::LogMean() const { return boost::math::digamma(shape); }
Real GammaCore::Entropy() const {
  return shape + boost::math::lgamma(shape) + (1 - shape) * LogMean();
}

}  // namespace DistLib
