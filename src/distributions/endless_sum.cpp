#include "distributions/endless_sum.h"

#include <boost/math/special_functions/bernoulli.hpp>
#include <cmath>

namespace DistLib {

// (1 + h / m)^-power has the coefficients of the binomial series.
void AddPower(Taylor& series, Real factor, Real power, Real m) {
  Real term = factor * std::pow(m, -power), j = 0;
  for (Real& coefficient : series) {
    term *= -(power + j) / ((j + 1) * m);
    coefficient += term;
    ++j;
  }
}

void AddLog(Taylor& series, Real factor, Real m) {
  Real term = -factor, j = 1;
  for (Real& coefficient : series) {
    term /= -m;
    coefficient += term / j;
    ++j;
  }
}

Real DerivativePart(const Taylor& series) {
  Real sum = 0;
  int order = 0;
  for (const Real coefficient : series) {
    ++order;
    if (order % 2 == 1)
      sum -= boost::math::bernoulli_b2n<Real>((order + 1) / 2) / (order + 1) * coefficient;
  }
  return sum;
}

Real EndCorrection(const Taylor& log_series) {
  // The exponential of the power series: the function's own, divided by its value.
  Taylor series{};
  for (std::size_t j = 0; j < series.size(); ++j) {
    Real sum = static_cast<Real>(j + 1) * log_series[j];
    for (std::size_t i = 0; i < j; ++i)
      sum += static_cast<Real>(i + 1) * log_series[i] * series[j - i - 1];
    series[j] = sum / static_cast<Real>(j + 1);
  }
  return 0.5L + DerivativePart(series);
}

}  // namespace DistLib
