#include "host/formula/special_functions.h"

#include <boost/math/special_functions/beta.hpp>
#include <boost/math/special_functions/erf.hpp>
#include <boost/math/special_functions/factorials.hpp>
#include <boost/math/special_functions/gamma.hpp>
#include <boost/math/tools/fraction.hpp>
#include <boost/math/tools/series.hpp>
#include <cmath>
#include <cstdint>
#include <limits>
#include <utility>

#include "host/formula/probability_masses.h"

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

constexpr double kEpsilon = std::numeric_limits<double>::epsilon();

// The fractions and series take numbers of terms that grow with the square root of the parameters.
constexpr double kLargestParameter = 1e11;
constexpr std::uintmax_t kMostTerms = 10'000'000;
// From here on the library loses digits in the powers.
constexpr double kLargeParameter = 50.0;

bool IsShape(double a) { return a > 0.0 && a <= kLargestParameter; }
bool IsProbability(double p) { return p >= 0.0 && p <= 1.0; }
bool IsInDomain(double a, double b, double p) {
  return IsShape(a) && IsShape(b) && IsProbability(p);
}

/// The series by which the Poisson probability gives P(a, x).
struct GammaSeries {
  using result_type = double;
  double operator()() {
    const double current = term;
    a += 1.0;
    term *= x / a;
    return current;
  }
  double a, x;
  double term = 1.0;
};

/// The continued fraction by which it gives Q(a, x). Abramowitz and Stegun 6.5.31.
struct GammaFraction {
  using result_type = std::pair<double, double>;
  result_type operator()() {
    const result_type terms{n * (a - n), x - a + 2.0 * n + 1.0};
    n += 1.0;
    return terms;
  }
  double a, x;
  double n = 0.0;
};

/// The smaller one of P and Q for a large a, and which one it is.
struct Tail {
  double value;
  bool is_upper;
  double Lower() const { return is_upper ? 1.0 - value : value; }
  double Upper() const { return is_upper ? value : 1.0 - value; }
};

Tail GammaTail(double a, double x) {
  std::uintmax_t terms = kMostTerms;
  const double mass = PoissonMass(a, x);
  if (mass == 0.0) return {0.0, x > a};
  if (x <= a) {
    GammaSeries series{a, x};
    return {mass * boost::math::tools::sum_series(series, kEpsilon, terms), false};
  }
  GammaFraction fraction{a, x};
  return {mass * a / boost::math::tools::continued_fraction_b(fraction, kEpsilon, terms), true};
}

/// The continued fraction that divides x^a y^b / B(a, b) (DiDonato and Morris, 1992, formula 9); it
/// converges fast up to the mean.
struct BetaFraction {
  using result_type = std::pair<double, double>;
  result_type operator()() {
    const double middle = n == 0.0 ? 1.0 : a + 2.0 * n - 1.0;  // its factor is 0 for n = 0
    const double numerator =
        (a + n - 1.0) / middle * ((a + b + n - 1.0) / middle) * n * (b - n) * x * x;
    const double denominator = n + n * (b - n) * x / middle +
                               (a + n) * (lambda + 1.0 + n * (2.0 - x)) / (a + 2.0 * n + 1.0);
    n += 1.0;
    return {numerator, denominator};
  }
  double a, b, x;
  double lambda;  // a - (a + b) x
  double n = 0.0;
};

Tail BetaTail(double a, double b, double x) {
  std::uintmax_t terms = kMostTerms;
  const double n = a + b;
  const double mass = BinomialMass(a, n, x);
  const double lambda = -std::fma(n, x, -a);
  const bool is_upper = lambda < 0.0;
  if (mass == 0.0) return {0.0, is_upper};
  BetaFraction fraction{a, b, x, lambda};
  if (is_upper) fraction = {b, a, 1.0 - x, -lambda};
  const double divisor = boost::math::tools::continued_fraction_b(fraction, kEpsilon, terms);
  return {mass * a / n * b / divisor, is_upper};
}

bool IsLarge(double a, double b) { return a >= 1.0 && b >= 1.0 && a + b >= kLargeParameter; }

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
  if (!IsShape(a) || !(x >= 0.0)) return kNaN;
  return a >= kLargeParameter ? GammaTail(a, x).Lower() : boost::math::gamma_p(a, x, Policy());
}
double GammaQ(double a, double x) {
  if (!IsShape(a) || !(x >= 0.0)) return kNaN;
  return a >= kLargeParameter ? GammaTail(a, x).Upper() : boost::math::gamma_q(a, x, Policy());
}
double GammaPInverse(double a, double p) {
  return IsShape(a) && IsProbability(p) ? boost::math::gamma_p_inv(a, p, Policy()) : kNaN;
}
double GammaQInverse(double a, double q) {
  return IsShape(a) && IsProbability(q) ? boost::math::gamma_q_inv(a, q, Policy()) : kNaN;
}
double GammaPDerivative(double a, double x) {
  if (!IsShape(a) || !(x >= 0.0)) return kNaN;
  return a >= kLargeParameter ? PoissonMass(a - 1.0, x)
                              : boost::math::gamma_p_derivative(a, x, Policy());
}

double Beta(double a, double b) {
  return IsShape(a) && IsShape(b) ? boost::math::beta(a, b, Policy()) : kNaN;
}
double BetaI(double a, double b, double x) {
  if (!IsInDomain(a, b, x)) return kNaN;
  return IsLarge(a, b) ? BetaTail(a, b, x).Lower() : boost::math::ibeta(a, b, x, Policy());
}
double BetaIComplement(double a, double b, double x) {
  if (!IsInDomain(a, b, x)) return kNaN;
  return IsLarge(a, b) ? BetaTail(a, b, x).Upper() : boost::math::ibetac(a, b, x, Policy());
}
BetaQuantile BetaIInverse(double a, double b, double p) {
  BetaQuantile quantile{kNaN, kNaN};
  if (IsInDomain(a, b, p))
    quantile.x = boost::math::ibeta_inv(a, b, p, &quantile.complement, Policy());
  return quantile;
}
BetaQuantile BetaIComplementInverse(double a, double b, double q) {
  BetaQuantile quantile{kNaN, kNaN};
  if (IsInDomain(a, b, q))
    quantile.x = boost::math::ibetac_inv(a, b, q, &quantile.complement, Policy());
  return quantile;
}
double BetaIDerivative(double a, double b, double x) {
  if (!IsInDomain(a, b, x)) return kNaN;
  return IsLarge(a, b) ? BinomialMass(a - 1.0, a + b - 2.0, x) * (a + b - 1.0)
                       : boost::math::ibeta_derivative(a, b, x, Policy());
}

}  // namespace zavhost::special
