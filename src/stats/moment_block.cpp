#include "stats/moment_block.h"

#include <algorithm>
#include <cmath>

#include "numbers/floating_point_scope.h"
#include "stats/power_sums.h"

namespace zavrel {
namespace {

static_assert(__LDBL_MANT_DIG__ == 64,
              "the retry beyond the range of a double needs 80-bit extended precision");

// Counts a value that is not a number.
[[gnu::noinline]] void CountSkipped(double value, MomentBlock& block) {
  if (HasCondition(value, kConditionExcluded)) {
    ++block.excluded;
  } else {
    ++block.not_a_number;
  }
}

/// Determines counts, minimum and maximum, and returns the sum.
template <class Real>
Real FirstPass(std::span<const double> values, MomentBlock& block) {
  block.presented = values.size();
  std::size_t first = 0;
  for (; first < values.size() && std::isnan(values[first]); ++first)
    CountSkipped(values[first], block);
  if (first == values.size()) return 0;

  double minimum = values[first];
  double maximum = minimum;
  Real sum = 0;
  for (const double x : values.subspan(first)) {
    if (std::isnan(x)) [[unlikely]] {
      CountSkipped(x, block);
      continue;
    }
    minimum = x < minimum ? x : minimum;
    maximum = x > maximum ? x : maximum;
    sum += static_cast<Real>(x);
  }
  block.valid = values.size() - block.not_a_number - block.excluded;
  block.minimum = Settled(minimum);
  block.maximum = Settled(maximum);
  return sum;
}

/// The results in Real; a missing result is the too-few code.
template <class Real>
struct Spread {
  Real variance;
  Real standard_deviation;
  bool has_skewness;
  Real skewness;
  bool has_kurtosis;
  Real kurtosis;
};

// n >= 2
template <class Real>
Spread<Real> SampleSpread(const PowerSums<Real>& sums, Real n) {
  Spread<Real> spread{};
  Real v = (sums.s2 - sums.s1 * sums.s1 / n) / (n - 1);
  if (v < 0) v = 0;
  const Real s = std::sqrt(v);
  spread.variance = v;
  spread.standard_deviation = s;
  spread.has_skewness = v != 0 && n > 2;
  if (spread.has_skewness) spread.skewness = n / ((n - 1) * (n - 2)) * sums.s3 / (v * s);
  spread.has_kurtosis = v != 0 && n > 3;
  if (spread.has_kurtosis) {
    spread.kurtosis = n * (n + 1) / ((n - 1) * (n - 2) * (n - 3)) * sums.s4 / (v * v) -
                      3 * (n - 1) * (n - 1) / ((n - 2) * (n - 3)) + 3;
  }
  return spread;
}

template <class Real>
Spread<Real> PopulationSpread(const PowerSums<Real>& sums, Real n) {
  Spread<Real> spread{};
  const Real v = sums.s2 / n;
  const Real s = std::sqrt(v);
  spread.variance = v;
  spread.standard_deviation = s;
  spread.has_skewness = spread.has_kurtosis = v != 0;
  if (v != 0) {
    spread.skewness = sums.s3 / (s * v * n);
    spread.kurtosis = sums.s4 / (v * v * n);
  }
  return spread;
}

template <class Real>
double Finite(Real result) {
  const auto value = static_cast<double>(result);
  return std::isfinite(value) ? value : ConditionDouble(kConditionNotFinite);
}

/// The data that both forms share.
template <class Real>
struct Passes {
  explicit Passes(std::span<const double> values, const RunningSum* first_pass = nullptr) {
    if (first_pass != nullptr && first_pass->IsFinite() && !values.empty()) {
      block.presented = block.valid = values.size();
      block.minimum = first_pass->minimum;
      block.maximum = first_pass->maximum;
      mean = first_pass->sum;
    } else {
      mean = FirstPass<Real>(values, block);
    }
    if (block.valid < 1) return;
    mean /= static_cast<Real>(block.valid);
    block.mean = Finite(mean);
    if (block.minimum != block.maximum) sums = SumPowers(values, mean);
  }

  MomentBlock block;  // counts, minimum, maximum and mean
  Real mean = 0;
  PowerSums<Real> sums;
};

template <class Real>
MomentBlock InForm(const Passes<Real>& passes, Form form) {
  MomentBlock block = passes.block;
  if (block.valid < 1) return block;
  constexpr double kTooFew = ConditionDouble(kConditionTooFew);
  block.standard_deviation = block.variance = block.skewness = block.kurtosis = kTooFew;
  const bool sample = form == Form::kSample;
  if (sample && block.valid < 2) return block;

  const auto n = static_cast<Real>(block.valid);
  const Spread<Real> spread =
      sample ? SampleSpread(passes.sums, n) : PopulationSpread(passes.sums, n);
  block.variance = Finite(spread.variance);
  block.standard_deviation = Finite(spread.standard_deviation);
  if (spread.has_skewness) block.skewness = Finite(spread.skewness);
  if (spread.has_kurtosis) block.kurtosis = Finite(spread.kurtosis);
  return block;
}

}  // namespace

double MomentBlock::operator[](StatisticId id) const {
  switch (id) {
    case StatisticId::kMinimum:
      return minimum;
    case StatisticId::kMaximum:
      return maximum;
    case StatisticId::kMean:
      return mean;
    case StatisticId::kStdDev:
      return standard_deviation;
    case StatisticId::kVariance:
      return variance;
    case StatisticId::kSkewness:
      return skewness;
    case StatisticId::kKurtosis:
      return kurtosis;
    default:
      return ConditionDouble(kConditionNoData);
  }
}

MomentBlock ComputeMoments(std::span<const double> values, Form form) {
  const FloatingPointScope environment;
  const MomentBlock block = Settled(InForm(Passes<double>(values), form));
  if (!environment.LeftNormalRange()) return block;
  return Settled(InForm(Passes<long double>(values), form));
}

MomentBlocks ComputeBothForms(std::span<const double> values, const RunningSum* first_pass) {
  const FloatingPointScope environment;
  const Passes<double> passes(values, first_pass);
  const MomentBlocks blocks =
      Settled(MomentBlocks{InForm(passes, Form::kPopulation), InForm(passes, Form::kSample)});
  if (!environment.LeftNormalRange()) return blocks;
  return {ComputeMoments(values, Form::kPopulation), ComputeMoments(values, Form::kSample)};
}

std::optional<double> MeanAlone(const RunningSum& first_pass, std::size_t count) {
  // Between these, a deviation other than 0 is at least 1e-47, half a unit in the last place of the
  // mean. Then no sum of fourth powers overflows, and no square of a variance underflows.
  constexpr double kSmallestMean = 1e-30;
  constexpr double kLargestValue = 1e60;
  if (count == 0 || !first_pass.IsFinite()) return std::nullopt;
  if (std::max(-first_pass.minimum, first_pass.maximum) > kLargestValue) return std::nullopt;
  const FloatingPointScope environment;
  const double mean = Settled(first_pass.sum / static_cast<double>(count));
  if (std::abs(mean) < kSmallestMean) return std::nullopt;
  return mean;
}

}  // namespace zavrel
