// The ratios of a noncentral chi-square variable and another: noncentral beta and F.

#include <stdexcept>

#include "distributions/beta_tails.h"
#include "distributions/poisson_mixture.h"
#include "distributions/search.h"

namespace DistLib {
namespace {

struct BetaComponent {
  Real a;
  Real b;
  Real x;
  Real y;        // 1 - x
  Real balance;  // b x / y: the a of which x would be the mean

  Real Lower(Real j) const { return BetaLower(At(j)); }
  Real Upper(Real j) const { return BetaUpper(At(j)); }
  Real LogStep(Real j) const { return BetaPower(At(j)).Log() - std::log(a + j); }
  Real StepRatio(Real j) const { return x * (a + b + j) / (a + j + 1); }
  Real MostRatio(Real j) const { return std::max(StepRatio(j), x); }
  /// Of x y times the density.
  Real LogDensity(Real j) const { return BetaPower(At(j)).Log(); }
  Real DensityRatio(Real j) const { return x * (a + b + j) / (a + j); }

 private:
  BetaPoint At(Real j) const { return {a + j, b, x, y, (a + j - balance) * y}; }
};
using BetaMixture = PoissonMixture<BetaComponent>;

class NoncentralBeta : public Searched<LogitScale> {
 public:
  NoncentralBeta(double a, double b, double noncentrality)
      : Searched(LogitScale{0, 1}), a_(a), b_(b), increase_(Real{noncentrality} / 2) {}

  DistLib::Moments Moments() const override { return SearchedMoments(Mode()); }

 private:
  std::optional<Real> Mode() const {
    if (a_ < 1) return 0;
    if (b_ < 1) return 1;
    if (a_ == 1 || b_ == 1) return {};
    return SearchedMode();
  }
  BetaMixture Mixture(Real x) const { return {{a_, b_, x, 1 - x, b_ * x / (1 - x)}, increase_}; }
  Real LogDensityAt(Real x) const override {
    if (x > 0 && x < 1) return Mixture(x).LogDensity() - std::log(x) - std::log(1 - x);
    const Real shape = x > 0 ? b_ : a_;
    if (shape < 1) throw std::overflow_error("no bound");
    if (shape > 1) return -kRealInfinity;
    return x > 0 ? std::log(a_ + increase_) : std::log(b_) - increase_;
  }
  Real DensityAt(Real x) const override { return std::exp(LogDensityAt(x)); }
  Real CumulativeAt(Real x) const override { return x == 0 ? 0 : x == 1 ? 1 : Mixture(x).Lower(); }
  Real UpperTailAt(Real x) const override { return x == 0 ? 1 : x == 1 ? 0 : Mixture(x).Upper(); }

  Real a_;
  Real b_;
  Real increase_;
};

class NoncentralF : public Searched<LogScale> {
 public:
  NoncentralF(double df1, double df2, double noncentrality)
      : Searched(LogScale{1 + noncentrality / Real{df1}}),
        m_(df1),
        n_(df2),
        noncentrality_(noncentrality) {}

  DistLib::Moments Moments() const override {
    const Real l = noncentrality_;
    const Real cumulants[4] = {m_ + l, 2 * (m_ + 2 * l), 8 * (m_ + 3 * l), 48 * (m_ + 4 * l)};
    const auto& [mean, variance, third, fourth] = cumulants;
    const Real square = mean * mean;
    const Real numerator[4] = {
        mean, variance + square, third + mean * (3 * variance + square),
        fourth + 4 * third * mean + 3 * variance * (variance + 2 * square) + square * square};
    const auto raw = [&](int r) {
      Real value = numerator[r - 1];
      for (int i = 1; i <= r; ++i) value *= n_ / m_ / (n_ - 2 * i);
      return value;
    };
    return FromRawMoments(raw, n_ / 2, Mode());
  }

 private:
  std::optional<Real> Mode() const {
    if (m_ < 2) return 0;
    if (m_ == 2) return {};
    return SearchedMode();
  }
  BetaMixture Mixture(Real x) const {
    const Real a = m_ / 2, odds = m_ * x / n_, whole = 1 + odds;
    return {{a, n_ / 2, odds / whole, 1 / whole, a * x}, noncentrality_ / 2};
  }
  Real LogDensityAt(Real x) const override {
    if (x > 0) return Mixture(x).LogDensity() - std::log(x);
    if (m_ < 2) throw std::overflow_error("no bound");
    return m_ == 2 ? -noncentrality_ / 2 : -kRealInfinity;
  }
  Real DensityAt(Real x) const override { return std::exp(LogDensityAt(x)); }
  Real CumulativeAt(Real x) const override { return x > 0 ? Mixture(x).Lower() : 0; }
  Real UpperTailAt(Real x) const override { return x > 0 ? Mixture(x).Upper() : 1; }

  Real m_;
  Real n_;
  Real noncentrality_;
};

}  // namespace

const Description kNoncentralBeta{
    .name = "noncentral beta",
    .other_names = {},
    .parameters = {{"a", kDegrees, {}},
                   {"b", kDegrees, {}},
                   {"noncentrality", kNoncentrality, 0.0}},
    .support = "numbers from 0 to 1",
    .formula =
        "x has the beta distribution with a + j and b, j the Poisson distribution with mean "
        "noncentrality / 2",
    .source = "Johnson, Kotz and Balakrishnan, Continuous Univariate Distributions 2, section 30.7",
    .make = Make<NoncentralBeta, 3>};

const Description kNoncentralF{
    .name = "noncentral F",
    .other_names = {},
    .parameters = {{"df1", kDegrees, {}},
                   {"df2", kDegrees, {}},
                   {"noncentrality", kNoncentrality, 0.0}},
    .support = "numbers from 0",
    .formula =
        "df1 x / (df1 x + df2) has the noncentral beta distribution with df1 / 2, df2 / 2 and "
        "noncentrality",
    .source = "Johnson, Kotz and Balakrishnan, Continuous Univariate Distributions 2, chapter 30",
    .make = Make<NoncentralF, 3>};

}  // namespace DistLib
