#pragma once
// The covariance or correlation of one pair of variables.

#include <cstddef>
#include <span>

#include "numbers/double_matrix.h"
#include "stats/statistic_id.h"

namespace zavrel {

enum class Measure : bool { kCovariance, kCorrelation };

struct PairOptions {
  Measure measure = Measure::kCovariance;
  Form form = Form::kSample;  // of covariances and of standard deviations
};

/// Mean and standard deviation, with the divisor of the pair's options. All sums run in observation
/// order.
struct VariableSummary {
  double mean;
  double standard_deviation;
  /// All values are equal. Rounding may make their mean another value, so the sum of products does
  /// not show that the covariance is 0.
  bool is_constant = false;
};

bool IsConstant(std::span<const double> values);

/// If an operation overflows or underflows, or a value is not finite, computes like ComputeMoments.
VariableSummary Summarise(std::span<const double> values, PairOptions options);

/// The same from the sums of d and d^2, d = x - mean; these sums are ignored if all values are
/// equal. Nothing may have overflowed.
VariableSummary SummaryFromSums(double mean, double s1, double s2, std::size_t n, bool is_constant,
                                PairOptions options);

/// The value from the sum of (x - mean x)(y - mean y) over n observations. Nothing may have
/// overflowed. Too few values, or a variable without a standard deviation, give the no-data
/// condition.
double PairValueFromSum(double sum, std::size_t n, const VariableSummary& x,
                        const VariableSummary& y, PairOptions options);

/// The value of two series of equal length. If an operation overflows or underflows, it is computed
/// again in 80-bit extended precision.
double PairValue(std::span<const double> x, const VariableSummary& of_x, std::span<const double> y,
                 const VariableSummary& of_y, PairOptions options);

/// Stores the value of a pair on both sides of the diagonal.
inline void SetBoth(DoubleMatrix& matrix, std::size_t i, std::size_t j, double value) {
  matrix[i][j] = value;
  matrix[j][i] = value;
}

}  // namespace zavrel
