#pragma once

#include <cstdint>
#include <span>

#include "stats/is_discrete.h"

namespace zavrel::Stats {

enum class Direction { kValueToFraction = 0, kProbabilityToValue = 1 };

/// Percentile methods as users number them. With x(1) <= ... <= x(n) and the definitions of
/// Hyndman and Fan, "Sample quantiles in statistical packages", The American Statistician 50
/// (1996):
enum class PercentileMethod : std::int16_t {
  kAutomatic = -1,         // kInverseEcdf for discrete data, kLinearEcdf for continuous
  kLinearIncluding = 0,    // definition 7, position 1 + (n - 1) p
  kLinearEcdf = 1,         // definition 4, position n p
  kNearest = 2,            // definition 3, the order statistic nearest n p, of two the even one
  kInverseEcdf = 3,        // definition 1, the inverse of the empirical distribution
  kLinearExcluding = 4,    // definition 6, position (n + 1) p
  kInverseEcdfAverage = 5  // definition 2, the same with averages at its jumps
};
inline constexpr std::int32_t kFirstPercentileMethod = -1;
inline constexpr std::int32_t kLastPercentileMethod = 5;

/// The value below which a fraction p of the data lies, by one of the methods, or the fraction of
/// the data at or below a value v (for continuous data, interpolated to the next value).
///
/// `sorted` is in ascending order. If a method checks whether p is a multiple of 1/n, a p closer to
/// such a multiple than the rounding of p, 2.2e-16, counts as that multiple. A p or v that is a
/// not-a-number is returned unchanged; empty data give the not-computed code.
///
/// Throws VekInvalidP for a p outside 0..1, VekInvalidPercentileMethod for a method outside -1..5;
/// the direction from value to fraction checks neither.
double Target(std::span<const double> sorted, Direction direction, std::int32_t method,
              DiscreteSetting setting, double p_or_v);

}  // namespace zavrel::Stats
