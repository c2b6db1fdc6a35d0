#include "host/formula/special_functions.h"

#include <boost/math/special_functions/beta.hpp>
#include <boost/math/special_functions/erf.hpp>
#include <boost/math/special_functions/factorials.hpp>
#include <boost/math/special_functions/gamma.hpp>
#include <cmath>
#include <limits>

namespace zavhost::special {
namespace {

namespace policies = boost::math::policies;
using Policy = policies::policy<policies::domain_error<policies::ignore_error>,
                                policies::pole_error<policies::ignore_error>,
                                policies::overflow_error<policies::ignore_error>,
                                policies::underflow_error<policies::ignore_error>,
                                policies::denorm_error<policies::ignore_error>,
                                policies::evaluation_error<policies::ignore_error>,
                                policies::rounding_error<policies::ignore_error>,
                                policies::indeterminate_result_error<policies::ignore_error>,
                                policies::promote_float<false>, policies::promote_double<false>>;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// The continued fraction of the beta function takes a number of terms that grows with the square
// root of its parameters, and nothing else bounds it.
constexpr double kLargestParameter = 1e11;

bool IsShape(double a) { return a > 0.0 && a <= kLargestParameter; }
bool IsProbability(double p) { return p >= 0.0 && p <= 1.0; }

}  // namespace

double Erf(double x) { return boost::math::erf(x, Policy()); }
double Erfc(double x) { return boost::math::erfc(x, Policy()); }
double ErfcInverse(double p) { return boost::math::erfc_inv(p, Policy()); }

double Gamma(double x) { return boost::math::tgamma(x, Policy()); }
double LogGamma(double x) { return x > 0.0 ? boost::math::lgamma(x, Policy()) : kNaN; }
double Factorial(int n) {
  return boost::math::unchecked_factorial<double>(static_cast<unsigned>(n));
}
double DoubleFactorial(int n) {
  return boost::math::double_factorial<double>(static_cast<unsigned>(n), Policy());
}

double GammaP(double a, double x) {
  return IsShape(a) && x >= 0.0 ? boost::math::gamma_p(a, x, Policy()) : kNaN;
}
double GammaQ(double a, double x) {
  return IsShape(a) && x >= 0.0 ? boost::math::gamma_q(a, x, Policy()) : kNaN;
}
double GammaPInverse(double a, double p) {
  return IsShape(a) && IsProbability(p) ? boost::math::gamma_p_inv(a, p, Policy()) : kNaN;
}
double GammaQInverse(double a, double q) {
  return IsShape(a) && IsProbability(q) ? boost::math::gamma_q_inv(a, q, Policy()) : kNaN;
}
double GammaPDerivative(double a, double x) {
  return IsShape(a) && x >= 0.0 ? boost::math::gamma_p_derivative(a, x, Policy()) : kNaN;
}

double BetaI(double a, double b, double x) {
  const bool is_inside = IsShape(a) && IsShape(b) && IsProbability(x);
  return is_inside ? boost::math::ibeta(a, b, x, Policy()) : kNaN;
}
double BetaIComplement(double a, double b, double x) {
  const bool is_inside = IsShape(a) && IsShape(b) && IsProbability(x);
  return is_inside ? boost::math::ibetac(a, b, x, Policy()) : kNaN;
}
double BetaIInverse(double a, double b, double p) {
  const bool is_inside = IsShape(a) && IsShape(b) && IsProbability(p);
  return is_inside ? boost::math::ibeta_inv(a, b, p, Policy()) : kNaN;
}
double BetaIComplementInverse(double a, double b, double q) {
  const bool is_inside = IsShape(a) && IsShape(b) && IsProbability(q);
  return is_inside ? boost::math::ibetac_inv(a, b, q, Policy()) : kNaN;
}
double BetaIDerivative(double a, double b, double x) {
  const bool is_inside = IsShape(a) && IsShape(b) && IsProbability(x);
  return is_inside ? boost::math::ibeta_derivative(a, b, x, Policy()) : kNaN;
}

double StudentTail(double df, double t) {
  const double square = t * t;
  if (std::isinf(square)) return 0.5 * BetaI(df / 2, 0.5, df / t / t);
  // Whichever argument is small keeps its digits.
  return 0.5 * (df > square ? BetaIComplement(0.5, df / 2, square / (df + square))
                            : BetaI(df / 2, 0.5, df / (df + square)));
}

double StudentTailInverse(double df, double tail) {
  if (!IsShape(df / 2) || !(tail > 0.0 && tail <= 0.5)) return kNaN;
  if (tail == 0.5) return 0.0;
  double complement = 0.0;
  const double x = boost::math::ibeta_inv(df / 2, 0.5, 2 * tail, &complement, Policy());
  return std::sqrt(df * complement / x);
}

}  // namespace zavhost::special
