#include <cmath>
#include <numbers>

#include "distributions/beta_tails.h"
#include "distributions/catalogue.h"
#include "distributions/positive_dist.h"

namespace DistLib {
namespace {

/// The probability below x with one degree of freedom in both numerator and denominator, where the
/// incomplete beta function loses the last digits of an argument near 1.
Real BothOneCumulative(Real x) { return std::atan(std::sqrt(x)) * (2 / std::numbers::pi_v<Real>); }

class F : public PositiveDist {
 public:
  F(double df1, double df2) : m_(df1), n_(df2), rest_(BetaRest(m_ / 2, n_ / 2)) {}

  DistLib::Moments Moments() const override {
    const Real m = m_, n = n_;
    DistLib::Moments moments;
    moments.mode = m > 2 ? (m - 2) / m * (n / (n + 2)) : 0;
    if (n > 2) moments.mean = n / (n - 2);
    if (n > 4) moments.variance = 2 * (n / (n - 2)) * (n / (n - 2)) * ((m + n - 2) / m) / (n - 4);
    if (n > 6)
      moments.skewness = (2 * m + n - 2) / (n - 6) * std::sqrt(8 * (n - 4) / (m * (m + n - 2)));
    if (n > 8) {
      const Real excess = 5 * n - 22 + (n - 4) / m * ((n - 2) / (m + n - 2)) * (n - 2);
      moments.kurtosis = 3 + 12 * excess / ((n - 6) * (n - 8));
    }
    return moments;
  }

 private:
  Real DensityAt(Real x) const override {
    if (x > 0) return BetaPower(At(x)).Value() / x;
    if (m_ < 2) throw std::overflow_error("no bound");
    return m_ == 2 ? 1 : 0;
  }
  Real CumulativeAt(Real x) const override {
    return BothOne() ? BothOneCumulative(x) : BetaLower(At(x));
  }
  Real UpperTailAt(Real x) const override {
    return BothOne() ? BothOneCumulative(1 / x) : BetaUpper(At(x));
  }
  /// Fisher: half the logarithm is approximately normal.
  Real ValueNear(Real z) const override {
    return std::exp(1 / n_ - 1 / m_ + z * std::sqrt(2 / m_ + 2 / n_));
  }
  Real Growth(Real x) const override { return (m_ - (m_ + n_) * m_ * x / (n_ + m_ * x)) / 2; }

  bool BothOne() const { return m_ == 1 && n_ == 1; }
  BetaPoint At(Real x) const {
    const Real a = m_ / 2, b = n_ / 2, whole = b + a * x;
    return {a, b, a * x / whole, b / whole, a * (b * ((1 - x) / whole)), rest_};
  }

  Real m_;
  Real n_;
  Real rest_;
};

}  // namespace

const Description kF{
    .name = "F",
    .other_names = {"Fisher F", "Fisher-Snedecor"},
    .parameters = {{"df1", kDegrees, {}}, {"df2", kDegrees, {}}},
    .support = "numbers from 0",
    .formula = "F(x) = I(df1 x / (df2 + df1 x); df1 / 2, df2 / 2), I the incomplete beta function",
    .source = "Johnson, Kotz and Balakrishnan, Continuous Univariate Distributions 2, chapter 27",
    .make = Make<F, 2>};

}  // namespace DistLib
