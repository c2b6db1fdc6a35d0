#pragma once
// The special functions behind the distributions. Outside its domain a function returns NaN. One
// file instantiates the library's templates for all their users; it computes in double precision
// only, so that the results are the same on every system.

namespace zavhost::special {

double Erf(double x);
double Erfc(double x);
/// x with erfc(x) = p.
double ErfcInverse(double p);

double Gamma(double x);
double LogGamma(double x);      // x > 0
double Factorial(int n);        // 0 to 170
double DoubleFactorial(int n);  // 0 to 300

/// The regularized incomplete gamma functions P and Q, the inverses with respect to x, and the
/// derivative of P; a > 0, x >= 0.
double GammaP(double a, double x);
double GammaQ(double a, double x);
double GammaPInverse(double a, double p);
double GammaQInverse(double a, double q);
double GammaPDerivative(double a, double x);

double Beta(double a, double b);  // a > 0, b > 0

/// The place of a quantile, also as its distance from 1, which has all its digits near there.
struct BetaQuantile {
  double x;
  double complement;
};

/// The regularized incomplete beta function, its complement, the inverses with respect to x, and
/// its derivative; a > 0, b > 0, 0 <= x <= 1.
double BetaI(double a, double b, double x);
double BetaIComplement(double a, double b, double x);
BetaQuantile BetaIInverse(double a, double b, double p);
BetaQuantile BetaIComplementInverse(double a, double b, double q);
double BetaIDerivative(double a, double b, double x);

}  // namespace zavhost::special
