#include "host/formula/probability_masses.h"

#include <cmath>
#include <numbers>

namespace zavhost {
namespace {

/// The remainder of Stirling's formula for the logarithm of Gamma(z + 1), z > 0. Abramowitz and
/// Stegun 6.1.41.
double StirlingRest(double z) {
  double rest = 0.0;
  for (; z < 16.0; z += 1.0) rest += (z + 0.5) * std::log1p(1.0 / z) - 1.0;
  const double s = 1.0 / (z * z);
  const double series =
      1.0 / 12.0 - s * (1.0 / 360.0 - s * (1.0 / 1260.0 - s * (1.0 / 1680.0 - s / 1188.0)));
  return rest + series / z;
}

/// k log(k / mean) - (k - mean), where `excess` is k - mean with all its digits.
double Deviance(double k, double mean, double excess) {
  const double v = excess / (k + mean);
  if (std::fabs(v) > 0.1) return k * std::log(k / mean) - excess;
  // log(k / mean) = 2 artanh v.
  const double square = v * v;
  double power = 2.0 * k * v;
  double sum = excess * v;
  for (double divisor = 3.0;; divisor += 2.0) {
    power *= square;
    const double next = sum + power / divisor;
    if (next == sum) return sum;
    sum = next;
  }
}

}  // namespace

double PoissonMass(double k, double mean) {
  if (mean == 0.0) return k == 0.0 ? 1.0 : 0.0;
  if (k == 0.0) return std::exp(-mean);
  return std::exp(-StirlingRest(k) - Deviance(k, mean, k - mean)) /
         std::sqrt(2.0 * std::numbers::pi * k);
}

double BinomialMass(double k, double n, double p) {
  if (p == 0.0 || p == 1.0) return k == n * p ? 1.0 : 0.0;
  if (k == 0.0) return std::exp(n * std::log1p(-p));
  if (k == n) return std::exp(n * std::log(p));
  const double excess = -std::fma(n, p, -k);
  const double rest = StirlingRest(n) - StirlingRest(k) - StirlingRest(n - k);
  const double deviance = Deviance(k, n * p, excess) + Deviance(n - k, n * (1.0 - p), -excess);
  return std::exp(rest - deviance) * std::sqrt(n / (n - k) / (2.0 * std::numbers::pi * k));
}

}  // namespace zavhost
