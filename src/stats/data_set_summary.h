#pragma once
// The form of a data set's statistics in the log.

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <variant>

#include "stats/moment_block.h"

namespace zavrel {

/// A sum of powers, with its extended-precision accumulator if there was one.
struct PowerSum {
  double sum = 0;
  std::optional<long double> accumulator{};

  /// The accumulator with all its 21 digits if there is one, otherwise the sum in the form "%g".
  std::string Text() const;
};

struct SummaryMoments {
  double mean = 0;
  double stdDev = 0;
  double variance = 0;
  double skewness = 0;
  double kurtosis = 0;
};

/// Counts, extremes, and either the moments or the sums of the first four powers.
struct DataSetSummary {
  using PowerSums = std::array<PowerSum, 4>;

  std::int32_t numTotalData = 0;  // cells in the data set
  std::int32_t numUsedData = 0;   // values used
  std::int32_t numErrs = 0;       // error cells
  std::int32_t numFiltered = 0;   // values excluded by a filter
  double min = 0;
  double max = 0;
  std::variant<SummaryMoments, PowerSums> statistics{};

  /// "{ numTotalData=%d, ..., kurtosis=%g }", or the power sums without braces. At full precision,
  /// the doubles of the first form have 17 significant digits.
  std::string Text(bool full_precision = false) const;
};

/// `total` and `errors` count the cells from which the block's values come.
DataSetSummary SummaryOf(const MomentBlock& block, std::size_t total, std::size_t errors);

}  // namespace zavrel
