// G. Marsaglia and J. Marsaglia 2004, "Evaluating the Anderson-Darling distribution", Journal of
// Statistical Software 9(2): the limit as a series, and a correction for finite samples whose
// coefficients were fitted to simulations.

#include "fitting/anderson_darling.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <numbers>

namespace DistLib {
namespace {

using std::numbers::pi;

/// The integral in term j of the series, by a recursion for the derivatives of its kernel.
double Integral(double a, int j) {
  const double t = (4 * j + 1) * (4 * j + 1) * pi * pi / (8 * a);
  if (t > 150) return 0;
  double before = pi / std::numbers::sqrt2 * std::exp(-t) / std::sqrt(t);
  double current = pi * std::sqrt(pi / 2) * std::erfc(std::sqrt(t));
  double power = a / 8;
  double sum = before + current * power;
  for (int i = 1; i < 200; ++i) {
    const double next = ((i - 0.5 - t) * current + t * before) / i;
    before = current;
    current = next;
    power *= a / (8 * i + 8);
    const double term = current * power;
    if (std::fabs(term) < 1e-18 * std::fabs(sum)) break;
    sum += term;
  }
  return sum;
}

double LimitLower(double a) {
  if (a < 0.01) return 0;
  double factor = 1 / a;
  double sum = factor * Integral(a, 0);
  for (int j = 1; j < 100; ++j) {
    factor *= (0.5 - j) / j;
    const double term = (4 * j + 1) * factor * Integral(a, j);
    if (std::fabs(term) < 1e-18) break;
    sum += term;
  }
  return sum;
}

/// A polynomial, the constant coefficient first.
double Polynomial(double x, std::initializer_list<double> coefficients) {
  double value = 0;
  for (auto it = std::rbegin(coefficients); it != std::rend(coefficients); ++it)
    value = value * x + *it;
  return value;
}

/// What a finite sample adds to the limit's cumulative probability p.
double Correction(double n, double p) {
  if (p > 0.8)
    return Polynomial(p, {-130.2137, 745.2337, -1705.091, 1950.646, -1116.360, 255.7844}) / n;
  const double border = 0.01265 + 0.1757 / n;
  if (p < border) {
    const double t = p / border;
    const double shape = std::sqrt(t) * (1 - t) * (49 * t - 102);
    return shape * (0.0037 / (n * n) + 0.00078 / n + 0.00006) / n;
  }
  const double t = (p - border) / (0.8 - border);
  const double shape = Polynomial(t, {-0.00022633, 6.54034, -14.6538, 14.458, -8.259, 1.91864});
  return shape * (0.04213 + 0.01365 / n) / n;
}

}  // namespace

double AndersonDarlingUpperTail(std::size_t n, double a) {
  const double limit = LimitLower(a);
  const double lower = limit + Correction(static_cast<double>(n), limit);
  return std::clamp(1 - lower, 0.0, 1.0);
}

}  // namespace DistLib
