#pragma once
// Matrices and least squares. One file instantiates the library's templates.

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

namespace zavhost {

/// A matrix of numbers, row by row.
struct Matrix {
  std::size_t rows = 0;
  std::size_t columns = 0;
  std::vector<double> values;

  double& At(std::size_t row, std::size_t column) { return values[row * columns + column]; }
  double At(std::size_t row, std::size_t column) const { return values[row * columns + column]; }
};

/// The maximum number of multiplications of one operation, a few seconds; larger ones give nothing.
inline constexpr double kLargestWork = 4e9;

std::optional<Matrix> Product(const Matrix& a, const Matrix& b);
/// Of square matrices. A singular matrix has no inverse.
std::optional<Matrix> Inverse(const Matrix& matrix);
std::optional<double> Determinant(const Matrix& matrix);

/// The fit of y = intercept + x * slopes. Slopes of columns that depend linearly on the columns
/// before them are 0 and do not count.
struct LinearFit {
  std::vector<double> slopes;
  std::vector<double> slope_errors;  // standard errors
  double intercept = 0.0;
  double intercept_error = 0.0;
  double regression_squares = 0.0;  // sum of squares, about the mean if there is an intercept
  double residual_squares = 0.0;
  double regressors = 0.0;  // the columns that count
  double degrees_of_freedom = 0.0;
};

/// Least squares by the QR decomposition of the data, centred if there is an intercept. x has a
/// column for each variable and as many rows as y has numbers.
std::optional<LinearFit> FitLinear(const Matrix& x, std::span<const double> y, bool has_intercept);

}  // namespace zavhost
