// Zipf's distributions, with finitely many values and with infinitely many (zeta).

#include <algorithm>

#include "distributions/catalogue.h"
#include "distributions/cores.h"
#include "distributions/discrete_dist.h"
#include "distributions/endless_sum.h"
#include "distributions/moments.h"

namespace DistLib {
namespace {

/// x^-s and its sums.
class Power {
 public:
  explicit Power(Real s) : s_(s) {}

  Scaled ScaledValue(Real x) const { return {1, -s_ * std::log(x)}; }
  Real Value(Real x) const { return ScaledValue(x).Value(); }
  Real EnoughFrom() const { return std::max(64.0L, 2 * std::fabs(s_)); }
  Taylor Series(Real x) const {
    Taylor series{};
    AddLog(series, -s_, x);
    return series;
  }
  Real Integral(Real x) const { return x * Value(x) / (s_ - 1); }

  /// m^-s + ... + n^-s; 0 if m is greater than n.
  Real Sum(Real m, Real n) const {
    Real sum = 0;
    const Real direct = std::min(n, std::max(EnoughFrom(), m + 64) - 1);
    for (; m <= direct; ++m) {
      const Real term = Value(m);
      sum += term;
      if (term <= kNegligible * sum) return sum;
    }
    if (m > n) return sum;
    return sum + IntegralBetween(m, n) + Value(m) * EndCorrection(Series(m)) +
           Value(n) * (1 - EndCorrection(Series(n)));
  }

 private:
  Real IntegralBetween(Real x, Real y) const {
    const Real log_ratio = std::log1p((y - x) / x), rest = 1 - s_;
    return x * Value(x) * (rest == 0 ? log_ratio : std::expm1(rest * log_ratio) / rest);
  }

  Real s_;
};

class Zipf : public DiscreteDist {
 public:
  Zipf(double exponent, double count)
      : DiscreteDist(1, count),
        exponent_(exponent),
        count_(count),
        power_(exponent_),
        total_(power_.Sum(1, count_)) {}

  DistLib::Moments Moments() const override {
    const auto raw = [this](int r) { return Power(exponent_ - r).Sum(1, count_) / total_; };
    DistLib::Moments moments = FromRawMoments(raw, kRealInfinity, {});
    if (exponent_ > 0) moments.mode = 1;
    moments.discrete_mean = WholeMean(*moments.mean);
    return moments;
  }

 private:
  Scaled ProbabilityOf(Real k) const override { return power_.ScaledValue(k) / total_; }
  Real LowerTail(Real k) const override { return power_.Sum(1, k) / total_; }
  Real UpperTailBeyond(Real k) const override { return power_.Sum(k + 1, count_) / total_; }

  Real exponent_;
  Real count_;
  Power power_;
  Real total_;
};

class Zeta : public DiscreteDist {
 public:
  explicit Zeta(double exponent)
      : DiscreteDist(1, kInfinity),
        exponent_(exponent),
        power_(exponent_),
        total_(EndlessSum(power_, 1)) {}

  DistLib::Moments Moments() const override {
    const auto raw = [this](int r) { return EndlessSum(Power(exponent_ - r), 1) / total_; };
    DistLib::Moments moments = FromRawMoments(raw, exponent_ - 1, 1);
    if (moments.mean) moments.discrete_mean = WholeMean(*moments.mean);
    return moments;
  }

 private:
  Scaled ProbabilityOf(Real k) const override { return power_.ScaledValue(k) / total_; }
  Real LowerTail(Real k) const override { return power_.Sum(1, k) / total_; }
  Real UpperTailBeyond(Real k) const override { return EndlessSum(power_, k + 1) / total_; }

  Real exponent_;
  Power power_;
  Real total_;
};

}  // namespace

const Description kZipf{
    .name = "Zipf",
    .other_names = {"zipfian", "finite Zipf"},
    // With a greater exponent, nothing is left beside 1.
    .parameters = {{"exponent", {.low = 0, .high = 1e4, .with_low = true, .with_high = true}, {}},
                   {"count",
                    {.low = 1, .high = 0x1p53, .with_low = true, .with_high = true, .whole = true},
                    {}}},
    .kind = Kind::kDiscrete,
    .support = "whole numbers from 1 to count",
    .formula = "f(x) = x^-exponent / (1 + 2^-exponent + ... + count^-exponent)",
    .source = "Johnson, Kemp and Kotz 2005, 11.2",
    .make = Make<Zipf, 2>};

const Description kZeta{
    .name = "zeta",
    .other_names = {"infinite Zipf", "discrete Pareto"},
    .parameters = {{"exponent", {.low = 1, .high = 1e4, .with_high = true}, {}}},
    .kind = Kind::kDiscrete,
    .support = "whole numbers from 1",
    .formula = "f(x) = x^-exponent / zeta(exponent), zeta Riemann's function",
    .source = "Johnson, Kemp and Kotz 2005, 11.2",
    .make = Make<Zeta, 1>};

}  // namespace DistLib
