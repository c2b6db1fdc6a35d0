#pragma once
// The base class of the library's distributions.
//
// catalogue.h says what makes a new distribution.

#include <limits>
#include <optional>

#include "random/rnd_gen.h"

namespace DistLib {

/// All intermediate results have a 64-bit significand: far out in a tail, rounding them to doubles
/// would cost three digits.
using Real = long double;

inline constexpr double kInfinity = std::numeric_limits<double>::infinity();

/// Moments that do not exist are empty.
struct Moments {
  std::optional<Real> mean;
  std::optional<Real> variance;
  std::optional<Real> skewness;
  std::optional<Real> kurtosis;  // 3 for a normal distribution
  std::optional<Real> mode;
  std::optional<Real> discrete_mean;  // of discrete distributions: the mean as a whole number
};

/// A distribution with its parameters. All members throw std::domain_error for arguments outside
/// the domain. Members may throw any other std::exception if there is no value.
class PdfDist {
 public:
  virtual ~PdfDist() = default;
  PdfDist(const PdfDist&) = delete;
  PdfDist& operator=(const PdfDist&) = delete;

  virtual DistLib::Moments Moments() const = 0;
  /// The differential entropy in nats, where it has a closed form; for a discrete distribution,
  /// Shannon's.
  virtual std::optional<Real> Entropy() const { return {}; }
  /// The ends of the support, which may be infinite.
  double Lowest() const { return lowest_; }
  double Highest() const { return highest_; }
  /// The density at x; for a discrete distribution, the probability of x.
  double Density(double x) const;
  /// Its logarithm, which is finite where the density itself underflows.
  double LogDensity(double x) const;
  /// The probability of x or less.
  double Cumulative(double x) const;
  /// The probability of more than x.
  double UpperTail(double x) const;
  /// The x whose cumulative probability is p; for a discrete distribution, the smallest x whose
  /// cumulative probability reaches p.
  double Quantile(double p) const;
  /// The x whose upper tail is q; for a discrete distribution, the smallest x whose upper tail does
  /// not exceed q.
  double UpperQuantile(double q) const;
  double Median() const { return Quantile(0.5); }
  /// A random value, from one double of the generator by inversion.
  double Random(zavrel::RndGen& generator) const;

 protected:
  /// Takes the ends of the support, which may be infinite, and the largest possible value if it is
  /// not the upper end.
  PdfDist(double lowest, double highest) : PdfDist(lowest, highest, highest) {}
  PdfDist(double lowest, double highest, double last)
      : lowest_(lowest), highest_(highest), last_(last) {}
  static void Require(bool in_domain);

  // x is finite and inside the support, p and q are strictly between 0 and 1.
  virtual Real DensityAt(Real x) const = 0;
  virtual Real LogDensityAt(Real x) const;
  virtual Real CumulativeAt(Real x) const = 0;
  virtual Real UpperTailAt(Real x) const = 0;
  virtual Real QuantileOf(Real p) const = 0;
  virtual Real UpperQuantileOf(Real q) const = 0;

 private:
  Real Supported(double x) const;

  double lowest_;
  double highest_;
  double last_;
};

}  // namespace DistLib
