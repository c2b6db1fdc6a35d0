// Tests of hypotheses and confidence intervals. Names without a point are those of older versions.

#include <algorithm>
#include <cmath>

#include "host/formula/builtin_groups.h"
#include "host/formula/compensated_sum.h"
#include "host/formula/data_values.h"
#include "host/formula/distribution_tails.h"
#include "host/formula/moments.h"
#include "host/formula/number_function.h"

namespace zavhost {
namespace {

/// A statistic of Student's test.
struct StudentStatistic {
  double t = 0.0;  // not a number if there are too few data or they do not vary
  double df = 1.0;
};

StudentStatistic PairedStatistic(const DataPairs& pairs) {
  std::vector<double> differences;
  differences.reserve(pairs.x.size());
  for (std::size_t i = 0; i < pairs.x.size(); ++i) differences.push_back(pairs.x[i] - pairs.y[i]);
  const auto count = static_cast<double>(differences.size());
  const double error = std::sqrt(SampleVariance(differences) / count);
  return {MeanOf(differences) / error, count - 1.0};
}

StudentStatistic PooledStatistic(std::span<const double> x, std::span<const double> y) {
  const auto x_count = static_cast<double>(x.size());
  const auto y_count = static_cast<double>(y.size());
  const double df = x_count + y_count - 2.0;
  const double variance = (SquaredDeviations(x) + SquaredDeviations(y)) / df;
  const double error = std::sqrt(variance * (1.0 / x_count + 1.0 / y_count));
  return {(MeanOf(x) - MeanOf(y)) / error, df};
}

/// For different variances (Welch, 1947).
StudentStatistic WelchStatistic(std::span<const double> x, std::span<const double> y) {
  const auto x_count = static_cast<double>(x.size());
  const auto y_count = static_cast<double>(y.size());
  const double x_part = SampleVariance(x) / x_count;
  const double y_part = SampleVariance(y) / y_count;
  const double sum = x_part + y_part;
  const double share = x_part / sum;
  const double df =
      1.0 / (share * share / (x_count - 1.0) + (1.0 - share) * (1.0 - share) / (y_count - 1.0));
  return {(MeanOf(x) - MeanOf(y)) / std::sqrt(sum), df};
}

Operand TTest(const BuiltInCall& call) {
  ArgumentReader read(call);
  const double tails = read.Whole(2);
  const double type = read.Whole(3);
  read.Require(tails == 1.0 || tails == 2.0);
  read.Require(type >= 1.0 && type <= 3.0);
  if (read.failed()) return read.failure();
  StudentStatistic statistic;
  if (type == 1.0) {
    const DataPairs pairs = PairsOf(call, 0, 1);
    if (pairs.error) return Value(*pairs.error);
    statistic = PairedStatistic(pairs);
  } else {
    const DataValues x = NumbersOfArgument(call, 0);
    const DataValues y = NumbersOfArgument(call, 1);
    if (x.error || y.error) return Value(x.error ? *x.error : *y.error);
    statistic =
        type == 2.0 ? PooledStatistic(x.numbers, y.numbers) : WelchStatistic(x.numbers, y.numbers);
  }
  if (!std::isfinite(statistic.t) || !(statistic.df > 0.0)) return Value(ErrorCode::kDiv0);
  return NumberValue(tails * StudentTail(std::fabs(statistic.t), statistic.df));
}

/// Both tails of the ratio of the variances.
Operand FTest(const BuiltInCall& call) {
  const DataValues x = NumbersOfArgument(call, 0);
  const DataValues y = NumbersOfArgument(call, 1);
  if (x.error || y.error) return Value(x.error ? *x.error : *y.error);
  const double ratio = SampleVariance(x.numbers) / SampleVariance(y.numbers);
  if (!std::isfinite(ratio) || ratio == 0.0) return Value(ErrorCode::kDiv0);
  const double x_df = static_cast<double>(x.numbers.size()) - 1.0;
  const double y_df = static_cast<double>(y.numbers.size()) - 1.0;
  return NumberValue(2.0 * std::fmin(FTail(ratio, x_df, y_df), FTail(1.0 / ratio, y_df, x_df)));
}

/// Of observed and expected frequencies.
Operand ChiSquaredTest(const BuiltInCall& call) {
  ArgumentReader read(call);
  const ArrayPtr shape = read.Array(0);
  const ArrayPtr expected = read.Array(1);
  const DataPairs pairs = PairsOf(call, 0, 1);
  if (pairs.error) return Value(*pairs.error);
  const bool has_shape = shape->rows == expected->rows && shape->columns == expected->columns;
  if (!has_shape || shape->values.size() == 1) return Value(ErrorCode::kNA);
  CompensatedSum sum;
  for (std::size_t i = 0; i < pairs.x.size(); ++i) {
    if (pairs.y[i] == 0.0) return Value(ErrorCode::kDiv0);
    if (pairs.x[i] < 0.0 || pairs.y[i] < 0.0) return Value(ErrorCode::kNum);
    const double difference = pairs.x[i] - pairs.y[i];
    sum.Add(difference * difference / pairs.y[i]);
  }
  const double rows = shape->rows - 1.0;
  const double columns = shape->columns - 1.0;
  const double df = rows == 0.0 ? columns : columns == 0.0 ? rows : rows * columns;
  return NumberValue(ChiSquaredTail(sum.value(), df));
}

/// The upper tail of the mean against a value.
Operand ZTest(const BuiltInCall& call) {
  const DataValues data = NumbersOfArgument(call, 0);
  if (data.error) return Value(*data.error);
  if (data.numbers.empty()) return Value(ErrorCode::kNA);
  const double mean = MeanOf(data.numbers);
  const double estimate = std::sqrt(SampleVariance(data.numbers));
  const double root_count = std::sqrt(static_cast<double>(data.numbers.size()));
  return ForEachElement(call, {1, 2}, [&](ArgumentReader& read) -> Value {
    const double value = read.Number(1);
    const double deviation = read.IsOmitted(2) ? estimate : read.Number(2);
    if (!read.IsOmitted(2)) read.Require(deviation > 0.0);
    if (!(deviation > 0.0)) return ErrorCode::kDiv0;
    return NumberValue(NormalTail((mean - value) / (deviation / root_count)));
  });
}

double ConfidenceNorm(double alpha, double deviation, Whole size) {
  if (!(alpha > 0.0 && alpha < 1.0) || deviation <= 0.0 || size < 1.0) return kNum;
  return -NormalQuantile(alpha / 2.0) * deviation / std::sqrt(size);
}
Value ConfidenceT(double alpha, double deviation, Whole size) {
  if (!(alpha > 0.0 && alpha < 1.0) || deviation <= 0.0 || size < 1.0) return ErrorCode::kNum;
  if (size == 1.0) return ErrorCode::kDiv0;
  return NumberValue(StudentTailInverse(alpha / 2.0, size - 1.0) * deviation / std::sqrt(size));
}

constexpr BuiltInFunction kFunctions[] = {
    {u"T.TEST", 4, 4, "aas", TTest},
    {u"TTEST", 4, 4, "aas", TTest},
    {u"F.TEST", 2, 2, "a", FTest},
    {u"FTEST", 2, 2, "a", FTest},
    {u"CHISQ.TEST", 2, 2, "a", ChiSquaredTest},
    {u"CHITEST", 2, 2, "a", ChiSquaredTest},
    {u"Z.TEST", 2, 3, "r", ZTest},
    {u"ZTEST", 2, 3, "r", ZTest},
    {u"CONFIDENCE", 3, 3, "s", Of<ConfidenceNorm>},
    {u"CONFIDENCE.NORM", 3, 3, "s", Of<ConfidenceNorm>},
    {u"CONFIDENCE.T", 3, 3, "s", Of<ConfidenceT>},
};

}  // namespace

std::span<const BuiltInFunction> HypothesisTestFunctions() { return kFunctions; }

}  // namespace zavhost
