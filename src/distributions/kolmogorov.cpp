#include "distributions/search.h"

namespace DistLib {
namespace {

/// The theta function has a series for each tail; both converge fast at this value.
constexpr Real kMiddle = 1;

/// The series in exp(-(k pi)^2 / (8 z^2)), k odd, relative to the first power; `term` takes
/// (k pi)^2 / (4 z^2).
template <class Term>
Real SeriesBelow(Real z, Term term) {
  const Real unit = kPi * kPi / (4 * z * z);
  Real sum = 0;
  for (int k = 9; k > 0; k -= 2) sum += term(k * k * unit) * std::exp((1 - k * k) * unit / 2);
  return sum;
}

/// The series in exp(-2 k^2 z^2) with alternating signs, relative to the first power.
template <class Term>
Real SeriesBeyond(Real z, Term term) {
  Real sum = 0;
  for (int k = 7; k > 0; --k) sum = term(k) * std::exp(2 * (1 - k * k) * z * z) - sum;
  return sum;
}

class Kolmogorov : public Searched<LogScale> {
 public:
  explicit Kolmogorov(double scale) : Searched(LogScale{kMedian * scale}), scale_(scale) {}

  DistLib::Moments Moments() const override {
    constexpr Real kZeta3 = 1.2020569031595942854L;
    const Real root = std::sqrt(kPi / 2);
    const Real raw[4] = {root * std::numbers::ln2_v<Real>, kPi * kPi / 12, root * 9 / 16 * kZeta3,
                         7 * kPi * kPi * kPi * kPi / 720};
    const auto standard = FromRawMoments([&](int r) { return raw[r - 1]; }, 5, {});
    DistLib::Moments moments = Moved(standard, 0, scale_);
    moments.mode = SearchedMode();
    return moments;
  }

 private:
  static constexpr Real kMedian = 0.82757L;

  static Real Below(Real z) {
    const Real sum = SeriesBelow(z, [](Real /*power*/) { return 1; });
    return std::sqrt(2 * kPi) / z * sum * std::exp(-kPi * kPi / (8 * z * z));
  }
  static Real Beyond(Real z) {
    return 2 * SeriesBeyond(z, [](int /*k*/) { return 1; }) * std::exp(-2 * z * z);
  }

  Real LogDensityAt(Real x) const override {
    const Real z = x / scale_;
    if (z == 0) return -kRealInfinity;
    if (z > kMiddle)
      return std::log(8 * z * SeriesBeyond(z, [](int k) { return k * k; })) - 2 * z * z -
             std::log(scale_);
    const Real sum = SeriesBelow(z, [](Real power) { return power - 1; });
    return std::log(std::sqrt(2 * kPi) / (z * z) * sum) - kPi * kPi / (8 * z * z) -
           std::log(scale_);
  }
  Real DensityAt(Real x) const override { return std::exp(LogDensityAt(x)); }
  Real CumulativeAt(Real x) const override {
    const Real z = x / scale_;
    if (z == 0) return 0;
    return z > kMiddle ? 1 - Beyond(z) : Below(z);
  }
  Real UpperTailAt(Real x) const override {
    const Real z = x / scale_;
    return z > kMiddle ? Beyond(z) : 1 - CumulativeAt(x);
  }

  Real scale_;
};

}  // namespace

const Description kKolmogorov{
    .name = "Kolmogorov",
    .other_names = {"Kolmogorov-Smirnov"},
    .parameters = {{"scale", kPositive, 1.0}},
    .support = "numbers from 0",
    .formula = "F(x) = 1 - 2 (exp(-2 z^2) - exp(-8 z^2) + exp(-18 z^2) - ...), z = x / scale",
    .source = "Marsaglia, Tsang and Wang 2003, Journal of Statistical Software 8 (18)",
    .make = Make<Kolmogorov, 1>};

}  // namespace DistLib
