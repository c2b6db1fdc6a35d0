#pragma once

#include <span>
#include <string>

namespace zavrel {

/// What a caller knows about the data: continuous, discrete, or nothing, so that IsDiscrete
/// decides.
enum class DiscreteSetting : int { kUnknown = -1, kContinuous = 0, kDiscrete = 1 };

constexpr DiscreteSetting SettingOf(bool discrete) {
  return discrete ? DiscreteSetting::kDiscrete : DiscreteSetting::kContinuous;
}

/// Whether data look discrete, by their ties: one flag for each thing that depends on it.
struct IsDiscrete {
  /// Of values in ascending order. With t ties (values equal to their predecessor) and d distinct
  /// values among n, the data are discrete when t > floor(n / divisor), the divisor being 2^31 - 1
  /// below 1,000 values (one tie is enough), then 2,000, 300 below 100,000, 40 below a million, 20
  /// from there on. For graphing they are not when n >= 20 and d > floor(n / 2). No values are
  /// discrete.
  explicit IsDiscrete(std::span<const double> sorted);

  /// "IsDiscrete forGraphing=%c, forMode=%c, forPercentile=%c" with T or F, for the log.
  std::string Text() const;

  bool forGraphing = true;
  bool forMode = true;
  bool forPercentile = true;
};

}  // namespace zavrel
