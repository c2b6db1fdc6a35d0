#include "stats/mode.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

#include "numbers/error_double.h"
#include "numbers/floating_point_scope.h"

namespace zavrel {
namespace {

constexpr std::size_t kMostForHalfSamples = 10;
constexpr std::size_t kMostBins = 100;

double MostFrequent(std::span<const double> sorted) {
  double mode = sorted[0];
  std::size_t highest = 0;
  for (std::size_t i = 0; i < sorted.size();) {
    std::size_t end = i + 1;
    while (end < sorted.size() && sorted[end] == sorted[i]) ++end;
    if (end - i > highest) {
      highest = end - i;
      mode = sorted[i];
    }
    i = end;
  }
  return mode;
}

/// The part of `window` with `length` values and the smallest span; of equal spans, the lowest.
std::span<const double> Densest(std::span<const double> window, std::size_t length) {
  std::size_t best = 0;
  for (std::size_t i = 1; i + length <= window.size(); ++i) {
    if (window[i + length - 1] - window[i] < window[best + length - 1] - window[best]) best = i;
  }
  return window.subspan(best, length);
}

double HalfSampleMode(std::span<const double> sorted, double scale) {
  std::array<double, kMostForHalfSamples> scaled;
  std::transform(sorted.begin(), sorted.end(), scaled.begin(),
                 [scale](double x) { return x * scale; });
  std::span<const double> window(scaled.data(), sorted.size());
  while (window.size() > 3) window = Densest(window, (window.size() + 1) / 2);
  if (window.size() == 3) {
    const double lower = window[1] - window[0];
    const double upper = window[2] - window[1];
    if (lower == upper) return window[1] / scale;
    window = lower < upper ? window.first(2) : window.last(2);
  }
  return (window.front() + window.back()) / 2 / scale;
}

double MiddleOfFullestBin(std::span<const double> sorted, double scale) {
  const std::size_t bins = std::min(sorted.size() / 3, kMostBins);
  const auto bin_count = static_cast<double>(bins);
  const double minimum = sorted.front() * scale;
  const double range = sorted.back() * scale - minimum;
  std::array<std::size_t, kMostBins> counts{};
  for (const double x : sorted) {
    // Multiplies first, so that a value on an edge gives a whole number as far as doubles allow.
    const double place = (x * scale - minimum) * bin_count / range;
    ++counts[place > 0 ? static_cast<std::size_t>(std::min(place, bin_count - 1)) : 0];
  }
  const auto fullest = std::max_element(counts.begin(), counts.begin() + bins) - counts.begin();
  const double middle = (static_cast<double>(fullest) + 0.5) * range / bin_count;
  return (minimum + middle) / scale;
}

double ContinuousMode(std::span<const double> sorted) {
  if (sorted.front() == sorted.back()) return sorted.front();
  // For values far below the largest double, nothing here overflows.
  const bool large = !(sorted.back() / 2 - sorted.front() / 2 < 1e300);
  const double scale = large ? 0x1p-10 : 1;
  const double mode = sorted.size() <= kMostForHalfSamples ? HalfSampleMode(sorted, scale)
                                                           : MiddleOfFullestBin(sorted, scale);
  return std::isfinite(mode) ? mode : ConditionDouble(kConditionNotFinite);
}

bool TakenAsDiscrete(std::span<const double> sorted, DiscreteSetting setting) {
  if (setting == DiscreteSetting::kUnknown) return IsDiscrete(sorted).forMode;
  return setting == DiscreteSetting::kDiscrete;
}

}  // namespace

double Mode(std::span<const double> sorted, DiscreteSetting setting) {
  if (sorted.empty()) return ConditionDouble(kConditionNoData);
  const FloatingPointScope environment;
  return Settled(TakenAsDiscrete(sorted, setting) ? MostFrequent(sorted) : ContinuousMode(sorted));
}

}  // namespace zavrel
