#include "distributions/poisson_tails.h"

#include <boost/math/special_functions/gamma.hpp>
#include <boost/math/tools/fraction.hpp>
#include <utility>

#include "distributions/stirling.h"

namespace DistLib {
namespace {

// The fractions of the incomplete beta function (DiDonato and Morris, 1992, formula 9) where the
// beta variable becomes a gamma variable; they divide mean^a e^-mean / gamma(a). `above` is by how
// much a is above the mean.

struct UpperFraction {
  using result_type = std::pair<Real, Real>;

  result_type operator()() {
    const Real middle = m == 0 ? 1 : a + 2 * m - 1, part = mean / middle;
    const Real numerator = (a + m - 1) * part * m * part;
    const Real denominator = m + m * part + (a + m) * (above + 1 + 2 * m) / (a + 2 * m + 1);
    m += 1;
    return {numerator, denominator};
  }

  Real a, mean, above;
  Real m = 0;
};

struct LowerFraction {
  using result_type = std::pair<Real, Real>;

  result_type operator()() {
    const result_type result{m * (a - m), 2 * m + 1 - above};
    m += 1;
    return result;
  }

  Real a, above;
  Real m = 0;
};

template <class Fraction>
Real ByFraction(Real a, Real mean, Fraction fraction) {
  std::uintmax_t terms = 100'000;
  const Real divisor = boost::math::tools::continued_fraction_b(
      fraction, std::numeric_limits<Real>::epsilon(), terms);
  return (PoissonPower(a, mean) * a).Value() / divisor;
}

/// Whether a is small or near the mean, where Boost's function is fast. Elsewhere it loses the more
/// digits the greater a is.
bool ServesBoost(Real a, Real above) { return a < 200 || above * above < 20 * a; }

}  // namespace

Real PoissonLower(Real k, Real mean) {
  const Real a = k + 1, above = a - mean;
  if (a == 0) return 0;
  if (ServesBoost(a, above)) return boost::math::gamma_q(a, mean);
  if (above > 0) return 1 - PoissonUpper(k, mean);
  return ByFraction(a, mean, LowerFraction{a, above});
}

Real PoissonUpper(Real k, Real mean) {
  const Real a = k + 1, above = a - mean;
  if (a == 0) return 1;
  if (ServesBoost(a, above)) return boost::math::gamma_p(a, mean);
  if (above < 0) return 1 - PoissonLower(k, mean);
  return ByFraction(a, mean, UpperFraction{a, mean, above});
}

}  // namespace DistLib
