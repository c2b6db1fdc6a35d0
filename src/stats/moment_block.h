#pragma once

#include <cstddef>
#include <optional>
#include <span>

#include "numbers/error_double.h"
#include "stats/running_sum.h"
#include "stats/statistic_id.h"

namespace zavrel {

/// Minimum, maximum and the first four moments of a series of values, with the counts.
struct MomentBlock {
  std::size_t presented = 0;  // values in the series
  std::size_t valid = 0;
  std::size_t not_a_number = 0;  // skipped
  std::size_t excluded = 0;      // skipped: they carry the excluded-value code

  double minimum = ConditionDouble(kConditionNoData);
  double maximum = ConditionDouble(kConditionNoData);
  double mean = ConditionDouble(kConditionNoData);
  double standard_deviation = ConditionDouble(kConditionNoData);
  double variance = ConditionDouble(kConditionNoData);
  double skewness = ConditionDouble(kConditionNoData);
  double kurtosis = ConditionDouble(kConditionNoData);

  /// The moment with this id; the no-data code for an unknown id.
  double operator[](StatisticId id) const;
};

/// The moments of the values that are numbers.
///
/// Two passes in observation order: the mean, then the sums S1..S4 of the powers of d = x - mean.
/// With n valid values:
///   sample form:      variance  v = (S2 - S1^2/n) / (n - 1), not below 0
///                     skewness  n / ((n-1)(n-2)) * S3 / v^1.5                       from n = 3
///                     kurtosis  n(n+1) / ((n-1)(n-2)(n-3)) * S4 / v^2
///                               - 3(n-1)^2 / ((n-2)(n-3)) + 3                       from n = 4
///   population form:  variance  v = S2 / n, skewness S3 / (n v^1.5), kurtosis S4 / (n v^2)
/// Both kurtosis forms are on one scale: a normal series gives about 3, not 0.
///
/// Without a valid value, every result is the no-data code. Too few values for a result, or no
/// spread for the third and fourth moment, give the too-few code; results that are not finite give
/// the not-finite code. If an operation overflows or underflows, everything is computed again in
/// 80-bit extended precision: fourth powers of deviations below 1e-77 are too small for a double.
MomentBlock ComputeMoments(std::span<const double> values, Form form);

/// Both forms of a series, at the cost of one.
struct MomentBlocks {
  MomentBlock population;
  MomentBlock sample;
};
/// `first_pass`: the running sum of the values, if it is already known.
MomentBlocks ComputeBothForms(std::span<const double> values,
                              const RunningSum* first_pass = nullptr);

/// The mean that ComputeMoments gives, in either form, of `count` values with this running sum;
/// nothing if only the deviations decide whether it is computed again in extended precision.
std::optional<double> MeanAlone(const RunningSum& first_pass, std::size_t count);

}  // namespace zavrel
