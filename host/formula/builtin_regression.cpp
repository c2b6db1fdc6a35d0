// Correlation and regression.

#include <cmath>

#include "host/formula/builtin_groups.h"
#include "host/formula/coercion.h"
#include "host/formula/data_values.h"
#include "host/formula/linear_algebra.h"
#include "host/formula/matrix_argument.h"
#include "host/formula/moments.h"
#include "host/formula/number_function.h"

namespace zavhost {
namespace {

/// Sums of squares and products about the means.
struct Sums {
  explicit Sums(const DataPairs& pairs)
      : count(static_cast<double>(pairs.x.size())),
        xx(SquaredDeviations(pairs.x)),
        yy(SquaredDeviations(pairs.y)),
        xy(DeviationProducts(pairs.x, pairs.y)) {}

  double count, xx, yy, xy;
};

Value Ratio(double numerator, double denominator) {
  if (!(denominator != 0.0)) return ErrorCode::kDiv0;
  return NumberValue(numerator / denominator);
}

Value Correlation(const DataPairs& pairs) {
  const Sums sums(pairs);
  const Value ratio = Ratio(sums.xy, std::sqrt(sums.xx) * std::sqrt(sums.yy));
  return ratio.number() != nullptr ? Value(std::fmax(-1.0, std::fmin(1.0, *ratio.number())))
                                   : ratio;
}
Value RSquared(const DataPairs& pairs) {
  const Value r = Correlation(pairs);
  return r.number() != nullptr ? NumberValue(*r.number() * *r.number()) : r;
}
Value CovarianceP(const DataPairs& pairs) {
  const Sums sums(pairs);
  return Ratio(sums.xy, sums.count);
}
Value CovarianceS(const DataPairs& pairs) {
  const Sums sums(pairs);
  return sums.count < 2.0 ? ErrorCode::kDiv0 : Ratio(sums.xy, sums.count - 1.0);
}
Value Slope(const DataPairs& pairs) {
  const Sums sums(pairs);
  return Ratio(sums.xy, sums.xx);
}
Value Intercept(const DataPairs& pairs) {
  const Value slope = Slope(pairs);
  if (const ErrorCode* error = slope.error()) return *error;
  return NumberValue(MeanOf(pairs.y) - *slope.number() * MeanOf(pairs.x));
}
Value StEyx(const DataPairs& pairs) {
  const Sums sums(pairs);
  if (sums.count < 3.0 || sums.xx == 0.0) return ErrorCode::kDiv0;
  const double residual = std::fmax(sums.yy - sums.xy / sums.xx * sums.xy, 0.0);
  return NumberValue(std::sqrt(residual / (sums.count - 2.0)));
}

Operand Forecast(const BuiltInCall& call) {
  const DataPairs pairs = PairsOf(call, 2, 1);
  const Value slope = pairs.error ? Value(*pairs.error) : Slope(pairs);
  if (const ErrorCode* error = slope.error()) return Value(*error);
  const double x_mean = MeanOf(pairs.x);
  const double y_mean = MeanOf(pairs.y);
  return ForEachElement(call, {0}, [&](ArgumentReader& read) {
    return NumberValue(y_mean + *slope.number() * (read.Number(0) - x_mean));
  });
}

double Fisher(double r) { return std::fabs(r) < 1.0 ? std::atanh(r) : kNum; }
double FisherInv(double z) { return std::tanh(z); }

/// The variables of LINEST and its relatives.
struct Model {
  Matrix x;                    // a column for each variable
  Matrix y;                    // as it was given
  bool is_transposed = false;  // the variables were rows
  bool has_intercept = true;
};

Matrix Transposed(const Matrix& matrix) {
  Matrix turned{matrix.columns, matrix.rows, std::vector<double>(matrix.values.size())};
  for (std::size_t row = 0; row < matrix.rows; ++row) {
    for (std::size_t column = 0; column < matrix.columns; ++column)
      turned.At(column, row) = matrix.At(row, column);
  }
  return turned;
}

/// The numbers as one variable.
Matrix AsColumn(Matrix matrix) {
  const std::size_t count = matrix.values.size();
  return {count, 1, std::move(matrix.values)};
}

Matrix CountingLike(const Matrix& shape) {
  Matrix counting = shape;
  for (std::size_t i = 0; i < counting.values.size(); ++i)
    counting.values[i] = static_cast<double>(i + 1);
  return counting;
}

/// The known y, the known x and whether there is an intercept. Of a column of y, the columns of x
/// are variables, of a row the rows; x of the shape of y is a single one.
Model ReadModel(ArgumentReader& read, std::size_t intercept_index, bool is_exponential) {
  Model model;
  model.y = ReadMatrix(read, 0);
  Matrix x = read.IsOmitted(1) ? CountingLike(model.y) : ReadMatrix(read, 1);
  model.has_intercept = read.IsOmitted(intercept_index) || read.Boolean(intercept_index);
  if (x.rows == model.y.rows && x.columns == model.y.columns) {
    model.x = AsColumn(std::move(x));
  } else if (model.y.columns == 1 && x.rows == model.y.rows) {
    model.x = std::move(x);
  } else if (model.y.rows == 1 && x.columns == model.y.columns) {
    model.x = Transposed(x);
    model.is_transposed = true;
  } else {
    read.Fail(ErrorCode::kRef);
  }
  if (!is_exponential) return model;
  for (double& y : model.y.values) {
    read.Require(y > 0.0);
    y = std::log(y);
  }
  return model;
}

/// LINEST, and LOGEST, whose coefficients are exponentials: the slopes from the last variable to
/// the first, the intercept, and below them the statistics.
template <bool kIsExponential>
Operand Estimate(const BuiltInCall& call) {
  ArgumentReader read(call);
  const Model model = ReadModel(read, 2, kIsExponential);
  const bool has_statistics = read.Boolean(3, false);
  if (read.failed()) return read.failure();
  const auto fit = FitLinear(model.x, model.y.values, model.has_intercept);
  if (!fit) return Value(ErrorCode::kNum);

  const std::size_t columns = model.x.columns + 1;
  std::vector<Value> values(columns * (has_statistics ? 5 : 1), Value(ErrorCode::kNA));
  const auto coefficient = [](double b) { return NumberValue(kIsExponential ? std::exp(b) : b); };
  for (std::size_t i = 0; i + 1 < columns; ++i) {
    const std::size_t place = columns - 2 - i;
    values[place] = coefficient(fit->slopes[i]);
    if (has_statistics) values[columns + place] = NumberValue(fit->slope_errors[i]);
  }
  values[columns - 1] = coefficient(fit->intercept);
  if (has_statistics) {
    const double df = fit->degrees_of_freedom;
    const double total = fit->regression_squares + fit->residual_squares;
    const double mean_residual = fit->residual_squares / df;
    if (model.has_intercept) values[2 * columns - 1] = NumberValue(fit->intercept_error);
    values[2 * columns] = NumberValue(total == 0.0 ? 1.0 : fit->regression_squares / total);
    values[2 * columns + 1] = NumberValue(df > 0.0 ? std::sqrt(mean_residual) : 0.0);
    values[3 * columns] = NumberValue(fit->regression_squares / fit->regressors / mean_residual);
    values[3 * columns + 1] = NumberValue(df);
    values[4 * columns] = NumberValue(fit->regression_squares);
    values[4 * columns + 1] = NumberValue(fit->residual_squares);
  }
  return ArrayResult(has_statistics ? 5 : 1, static_cast<std::int32_t>(columns), std::move(values));
}

/// The new x with a column for each variable, and the shape of the results in `predicted`.
Matrix ReadNewX(ArgumentReader& read, const Model& model, Matrix& predicted) {
  predicted = model.y;
  if (read.IsOmitted(2)) return model.x;
  Matrix x = ReadMatrix(read, 2);
  if (model.x.columns == 1) {
    predicted = x;
    return AsColumn(std::move(x));
  }
  if (model.is_transposed) {
    predicted = {1, x.columns, {}};
    x = Transposed(x);
  } else {
    predicted = {x.rows, 1, {}};
  }
  read.Require(x.columns == model.x.columns, ErrorCode::kRef);
  return x;
}

/// TREND and GROWTH.
template <bool kIsExponential>
Operand Predict(const BuiltInCall& call) {
  ArgumentReader read(call);
  const Model model = ReadModel(read, 3, kIsExponential);
  Matrix predicted;
  const Matrix x = ReadNewX(read, model, predicted);
  if (read.failed()) return read.failure();
  const auto fit = FitLinear(model.x, model.y.values, model.has_intercept);
  if (!fit) return Value(ErrorCode::kNum);
  predicted.values.resize(x.rows);
  for (std::size_t row = 0; row < x.rows; ++row) {
    double y = fit->intercept;
    for (std::size_t i = 0; i < x.columns; ++i) y += fit->slopes[i] * x.At(row, i);
    predicted.values[row] = kIsExponential ? std::exp(y) : y;
  }
  return MatrixResult(predicted, ErrorCode::kNum);
}

constexpr BuiltInFunction kFunctions[] = {
    {u"CORREL", 2, 2, "a", OfPairs<Correlation>},
    {u"PEARSON", 2, 2, "a", OfPairs<Correlation>},
    {u"RSQ", 2, 2, "a", OfPairs<RSquared>},
    {u"COVAR", 2, 2, "a", OfPairs<CovarianceP>},
    {u"COVARIANCE.P", 2, 2, "a", OfPairs<CovarianceP>},
    {u"COVARIANCE.S", 2, 2, "a", OfPairs<CovarianceS>},
    {u"SLOPE", 2, 2, "a", OfPairs<Slope, 1, 0>},
    {u"INTERCEPT", 2, 2, "a", OfPairs<Intercept, 1, 0>},
    {u"STEYX", 2, 2, "a", OfPairs<StEyx, 1, 0>},
    {u"FORECAST", 3, 3, "raa", Forecast},
    {u"FORECAST.LINEAR", 3, 3, "raa", Forecast},
    {u"FISHER", 1, 1, "s", Of<Fisher>},
    {u"FISHERINV", 1, 1, "s", Of<FisherInv>},
    {u"LINEST", 1, 4, "aas", Estimate<false>},
    {u"LOGEST", 1, 4, "aas", Estimate<true>},
    {u"TREND", 1, 4, "aaas", Predict<false>},
    {u"GROWTH", 1, 4, "aaas", Predict<true>},
};

}  // namespace

std::span<const BuiltInFunction> RegressionFunctions() { return kFunctions; }

}  // namespace zavhost
