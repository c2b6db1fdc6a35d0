#pragma once

#include <span>
#include <string>

namespace zavrel {

/// The caller's knowledge of the data: continuous, discrete, or unknown, in which case IsDiscrete
/// decides.
enum class DiscreteSetting : int { kUnknown = -1, kContinuous = 0, kDiscrete = 1 };

constexpr DiscreteSetting SettingOf(bool discrete) {
  return discrete ? DiscreteSetting::kDiscrete : DiscreteSetting::kContinuous;
}

/// Whether data look discrete, judged by their ties: one flag for each use.
struct IsDiscrete {
  /// Judges values in ascending order. With t ties (values equal to their predecessor) and d
  /// distinct values among n, the data are discrete if t > floor(n / divisor). The divisor is 2^31
  /// - 1 below 1,000 values (one tie is enough), 2,000 below 10,000, 300 below 100,000, 40 below a
  /// million, and 20 from there on. For graphing, data with n >= 20 and d > floor(n / 2) are not
  /// discrete. Empty data are discrete.
  explicit IsDiscrete(std::span<const double> sorted);

  /// "IsDiscrete forGraphing=%c, forMode=%c, forPercentile=%c" with T or F, for the log.
  std::string Text() const;

  bool forGraphing = true;
  bool forMode = true;
  bool forPercentile = true;
};

}  // namespace zavrel
