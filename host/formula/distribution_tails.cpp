#include "host/formula/distribution_tails.h"

#include <cmath>
#include <numbers>

#include "host/formula/number_function.h"
#include "host/formula/special_functions.h"

namespace zavhost {

double NormalTail(double z) { return special::Erfc(z / std::numbers::sqrt2) / 2.0; }

double NormalQuantile(double p) {
  return p > 0.0 && p < 1.0 ? -special::ErfcInverse(2.0 * p) * std::numbers::sqrt2 : kNum;
}

double StudentTail(double t, double df) {
  if (t < 0.0) return 1.0 - StudentTail(-t, df);
  const double square = t * t;
  // Whichever argument is small keeps its digits.
  const double ratio = df / square;
  return 0.5 * (ratio > 1.0 ? special::BetaIComplement(0.5, df / 2.0, square / (df + square))
                            : special::BetaI(df / 2.0, 0.5, ratio / (1.0 + ratio)));
}

double StudentTailInverse(double tail, double df) {
  if (!(tail > 0.0 && tail <= 0.5)) return kNum;
  const special::BetaQuantile quantile = special::BetaIInverse(df / 2.0, 0.5, 2.0 * tail);
  return std::sqrt(df * quantile.complement / quantile.x);
}

double ChiSquaredTail(double x, double df) { return special::GammaQ(df / 2.0, x / 2.0); }

double FTail(double x, double df1, double df2) {
  const double ratio = df1 * x / df2;
  return ratio > 1.0 ? special::BetaI(df2 / 2.0, df1 / 2.0, 1.0 / (1.0 + ratio))
                     : special::BetaIComplement(df1 / 2.0, df2 / 2.0, ratio / (1.0 + ratio));
}

}  // namespace zavhost
