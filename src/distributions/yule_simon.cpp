#include <algorithm>

#include "distributions/catalogue.h"
#include "distributions/discrete_dist.h"
#include "distributions/endless_sum.h"

namespace DistLib {
namespace {

class YuleSimon : public DiscreteDist {
 public:
  explicit YuleSimon(double shape) : DiscreteDist(1, kInfinity), a_(shape) {}

  DistLib::Moments Moments() const override {
    DistLib::Moments moments;
    moments.mode = 1;
    if (a_ <= 1) return moments;
    moments.mean = a_ / (a_ - 1);
    moments.discrete_mean = WholeMean(*moments.mean);
    if (a_ <= 2) return moments;
    moments.variance = *moments.mean * *moments.mean / (a_ - 2);
    if (a_ <= 3) return moments;
    moments.skewness = (a_ + 1) * (a_ + 1) * std::sqrt(a_ - 2) / ((a_ - 3) * a_);
    if (a_ <= 4) return moments;
    moments.kurtosis = a_ + 6 + (11 * a_ * a_ * a_ - 49 * a_ - 22) / ((a_ - 4) * (a_ - 3) * a_);
    return moments;
  }

 private:
  Scaled ProbabilityOf(Real k) const override { return {a_ / (a_ + k), LogTail(k - 1)}; }
  Real LowerTail(Real k) const override { return -std::expm1(LogTail(k)); }
  Real UpperTailBeyond(Real k) const override { return std::exp(LogTail(k)); }

  /// The tail beyond k, k B(k, shape + 1), is the product of i / (i + shape) from 1 to k. Its
  /// logarithm is a sum of terms with one sign, so that the lower tail is exact for small shapes.
  Real LogTail(Real k) const {
    constexpr Real kDirect = 64;
    Real sum = 0;
    for (Real i = 1; i <= std::min(k, kDirect); ++i) sum -= Term(i);
    if (k <= kDirect) return sum;
    const Real low = kDirect + 1;
    return sum - Integral(low, k) - (Term(low) + Term(k)) / 2 - DerivativePart(Series(low)) +
           DerivativePart(Series(k));
  }
  Real Term(Real x) const { return std::log1p(a_ / x); }
  Real Integral(Real low, Real high) const {
    return high * Term(high) - low * Term(low) + a_ * std::log1p((high - low) / (low + a_));
  }
  /// Of log(x + shape) - log(x).
  Taylor Series(Real x) const {
    Taylor series{};
    Real factor = -1, j = 1;
    for (Real& coefficient : series) {
      factor /= -x;
      coefficient = factor * std::expm1(-j * Term(x)) / j;
      ++j;
    }
    return series;
  }

  Real a_;
};

}  // namespace

const Description kYuleSimon{.name = "Yule-Simon",
                             .other_names = {"Yule"},
                             .parameters = {{"shape", kDegrees, {}}},
                             .kind = Kind::kDiscrete,
                             .support = "whole numbers from 1",
                             .formula = "f(x) = shape B(x, shape + 1), B the beta function",
                             .source = "Johnson, Kemp and Kotz 2005, 6.10",
                             .make = Make<YuleSimon, 1>};

}  // namespace DistLib
