// The choice of method by n and d follows Simard and L'Ecuyer 2011, "Computing the two-sided
// Kolmogorov-Smirnov distribution", Journal of Statistical Software 39(11).

#include "fitting/kolmogorov.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

namespace DistLib {
namespace {

using Real = long double;

/// A square matrix times a power of two, which keeps high powers of it in range.
class ScaledMatrix {
 public:
  explicit ScaledMatrix(std::size_t size) : size_(size), entries_(size * size) {}

  Real& at(std::size_t row, std::size_t column) { return entries_[row * size_ + column]; }
  Real at(std::size_t row, std::size_t column) const { return entries_[row * size_ + column]; }
  int exponent() const { return exponent_; }

  ScaledMatrix operator*(const ScaledMatrix& other) const {
    ScaledMatrix product(size_);
    product.exponent_ = exponent_ + other.exponent_;
    for (std::size_t i = 0; i < size_; ++i) {
      for (std::size_t k = 0; k < size_; ++k) {
        const Real factor = at(i, k);
        if (factor == 0) continue;
        for (std::size_t j = 0; j < size_; ++j) product.at(i, j) += factor * other.at(k, j);
      }
    }
    product.Normalize();
    return product;
  }

 private:
  void Normalize() {
    const Real middle = at(size_ / 2, size_ / 2);
    if (!(middle > 1e100L)) return;
    const int shift = std::ilogb(middle);
    exponent_ += shift;
    for (Real& entry : entries_) entry = std::scalbn(entry, -shift);
  }

  std::size_t size_;
  std::vector<Real> entries_;
  int exponent_ = 0;
};

ScaledMatrix Power(const ScaledMatrix& base, std::size_t n) {
  if (n == 1) return base;
  const ScaledMatrix half = Power(base, n / 2);
  const ScaledMatrix square = half * half;
  return n % 2 == 0 ? square : square * base;
}

/// Marsaglia, Tsang and Wang 2003, Journal of Statistical Software 8(18): the cumulative
/// probability as an entry of a matrix's n-th power.
Real ExactLower(std::size_t n, Real d) {
  const Real distance = static_cast<Real>(n) * d;
  const auto k = static_cast<std::size_t>(distance) + 1;
  const std::size_t size = 2 * k - 1;
  const Real h = static_cast<Real>(k) - distance;
  ScaledMatrix matrix(size);
  for (std::size_t i = 0; i < size; ++i) {
    for (std::size_t j = 0; j < std::min(i + 2, size); ++j) matrix.at(i, j) = 1;
  }
  for (std::size_t i = 0; i < size; ++i) {
    matrix.at(i, 0) -= std::pow(h, static_cast<Real>(i + 1));
    matrix.at(size - 1, i) -= std::pow(h, static_cast<Real>(size - i));
  }
  if (2 * h > 1) matrix.at(size - 1, 0) += std::pow(2 * h - 1, static_cast<Real>(size));
  for (std::size_t i = 0; i < size; ++i) {
    Real factorial = 1;
    for (std::size_t j = i + 1; j-- > 0;) {
      factorial *= static_cast<Real>(i - j + 1);
      matrix.at(i, j) /= factorial;
    }
  }
  const ScaledMatrix power = Power(matrix, n);
  // n! / n^n, whose factors balance those of the power.
  const auto count = static_cast<Real>(n);
  const Real logarithm = std::lgamma(count + 1) - count * std::log(count) +
                         static_cast<Real>(power.exponent()) * std::numbers::ln2_v<Real>;
  return power.at(k - 1, k - 1) * std::exp(logarithm);
}

/// Smirnov's probability that the one-sided distance is at least d; all terms are positive.
Real OneSidedUpper(std::size_t n, Real d) {
  const auto count = static_cast<Real>(n);
  const Real log_factorial = std::lgamma(count + 1);
  Real sum = 0;
  for (std::size_t j = 0; j <= static_cast<std::size_t>(count * (1 - d)); ++j) {
    const auto i = static_cast<Real>(j);
    const Real below = 1 - d - i / count, above = d + i / count;
    if (!(below > 0)) break;
    sum += std::exp(log_factorial - std::lgamma(i + 1) - std::lgamma(count - i + 1) +
                    (count - i) * std::log(below) + (i - 1) * std::log(above));
  }
  return d * sum;
}

/// Pelz and Good 1976, Journal of the Royal Statistical Society B 38, 152-156: an expansion in
/// powers of 1 / sqrt(n) whose first term is Kolmogorov's limit.
Real ExpandedLower(std::size_t n, Real d) {
  constexpr Real kPi = std::numbers::pi_v<Real>;
  constexpr int kTerms = 40;
  const Real root = std::sqrt(static_cast<Real>(n)), z = d * root, z2 = z * z, z4 = z2 * z2;
  Real k0 = 0, k1 = 0, k2 = 0, k3 = 0, k2_whole = 0, k3_whole = 0;
  for (int k = 0; k < kTerms; ++k) {
    const Real odd = kPi * (static_cast<Real>(k) + 0.5L), a = odd * odd;
    const Real weight = std::exp(-a / (2 * z2));
    k0 += weight;
    k1 += (a - z2) * weight;
    k2 += (6 * z4 * z2 + 2 * z4 + a * (2 * z4 - 5 * z2) + a * a * (1 - 2 * z2)) * weight;
    k3 += (a * a * a * (5 - 30 * z2) + a * a * (212 * z4 - 60 * z2) +
           a * (135 * z4 - 96 * z4 * z2) - 30 * z4 * z2 - 90 * z4 * z4) *
          weight;
    const Real whole = kPi * static_cast<Real>(k), b = whole * whole;
    const Real whole_weight = std::exp(-b / (2 * z2));
    k2_whole += b * whole_weight;
    k3_whole += (3 * b * z2 - b * b) * whole_weight;
  }
  // Each term stands for itself and its mirror image.
  const Real half = std::sqrt(kPi / 2);
  const Real first = half / (3 * z4) * k1;
  const Real second = half * (k2 / (36 * z4 * z2 * z) - k2_whole / (18 * z2 * z));
  const Real third = half * (k3 / (3240 * z4 * z4 * z2) + k3_whole / (108 * z4 * z2));
  return 2 * half / z * k0 + first / root + second / (root * root) + third / (root * root * root);
}

}  // namespace

double KolmogorovUpperTail(std::size_t n, double d) {
  constexpr std::size_t kExact = 500;
  const auto count = static_cast<double>(n);
  if (d >= 1) return 0;
  if (2 * count * d <= 1) return 1;
  if (count * d * d >= 4 || d >= 0.5)
    return static_cast<double>(std::min<Real>(2 * OneSidedUpper(n, d), 1));
  const bool exact = n <= kExact || (count * std::pow(d, 1.5) <= 1.4 && n <= 100000);
  const Real lower = exact ? ExactLower(n, d) : ExpandedLower(n, d);
  return static_cast<double>(std::clamp<Real>(1 - lower, 0, 1));
}

}  // namespace DistLib
