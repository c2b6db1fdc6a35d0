#include "matrix/eigendata.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <string>
#include <utility>

#include "contracts/message_ids.h"
#include "diagnostics/vek_exception.h"
#include "matrix/dense_storage.h"
#include "numbers/floating_point_scope.h"

namespace zavrel::matrix {
namespace {

using dense::Outcome;
using dense::Shape;
using dense::Storage;

/// Six significant digits, like printf's %g, in any locale.
std::u16string ToGeneralText(double number) {
  std::array<char, 32> text;
  const auto end =
      std::to_chars(text.data(), text.data() + text.size(), number, std::chars_format::general, 6);
  return {text.data(), end.ptr};
}

void RequireSymmetric(const DoubleMatrix& matrix, const char* place) {
  for (std::size_t r = 0; r < matrix.size(); ++r) {
    for (std::size_t c = 0; c < r; ++c) {
      if (matrix[r][c] == matrix[c][r]) continue;
      throw VekMatrixNotSymmetric(
          place, messages::kMessageMatrixNotSymmetric,
          {static_cast<std::int64_t>(r + 1), static_cast<std::int64_t>(c + 1),
           ToGeneralText(matrix[r][c]), ToGeneralText(matrix[c][r])});
    }
  }
}

/// The messages for failures of an analysis.
struct FailureTexts {
  std::int32_t invalid_values;
  std::int32_t no_convergence;
};
constexpr FailureTexts kEigenTexts{messages::kMessageEigenInvalidValues,
                                   messages::kMessageEigenNoConvergence};
constexpr FailureTexts kScoreTexts{messages::kMessageValuesNotFinite,
                                   messages::kMessageNoConvergence};

void RequireFinite(const double* numbers, std::size_t count, const char* place,
                   FailureTexts texts) {
  if (!dense::IsFinite(numbers, count)) throw VekInvalidDataType(place, texts.invalid_values);
}

/// Scales numbers whose squares would overflow or underflow by a power of two, which is exact.
/// Returns the exponent; 0 for ordinary numbers.
int ScaleUnusual(double* numbers, std::size_t count) {
  constexpr int kOrdinary = 400;
  double largest = 0;
  for (std::size_t i = 0; i < count; ++i) largest = std::max(largest, std::abs(numbers[i]));
  int exponent = 0;
  std::frexp(largest, &exponent);
  if (std::abs(exponent) <= kOrdinary) return 0;
  for (std::size_t i = 0; i < count; ++i) numbers[i] = std::ldexp(numbers[i], -exponent);
  return exponent;
}

void RequireDone(Outcome outcome, const char* place, FailureTexts texts) {
  if (outcome == Outcome::kInvalidValues) throw VekInvalidDataType(place, texts.invalid_values);
  if (outcome == Outcome::kNoConvergence) throw VekNoConvergence(place, texts.no_convergence);
}

}  // namespace

void eigendata_private(const DoubleMatrix& matrix, std::vector<double>& eigenvalues,
                       DoubleMatrix& eigenvectors, EigendataOptions options,
                       const dense::Kernels& kernels) {
  constexpr const char* kPlace = "matrix::eigendata_private";
  const FloatingPointScope environment;
  const std::size_t n = dense::SizeOfSquare(matrix, kPlace);
  RequireSymmetric(matrix, kPlace);
  if (n == 0) {
    eigenvalues.clear();
    eigenvectors.clear();
    return;
  }
  const Shape shape{n, n};
  Storage symmetric(shape), vectors(options.compute_vectors ? shape : Shape{});
  dense::CopyRows(matrix, shape, symmetric.data());
  RequireFinite(symmetric.data(), n * n, kPlace, kEigenTexts);

  std::vector<double> values(n);
  RequireDone(kernels.self_adjoint_eigen(symmetric.data(), n, values.data(),
                                         options.compute_vectors ? vectors.data() : nullptr),
              kPlace, kEigenTexts);
  if (options.descending) std::ranges::reverse(values);
  DoubleMatrix rows;
  if (options.compute_vectors) {
    rows = dense::MakeMatrix(shape);
    dense::CopyFromColumns(vectors.data(), shape, 0, rows);
    if (options.descending)
      for (std::vector<double>& row : rows) std::ranges::reverse(row);
  }
  eigenvalues = std::move(values);
  eigenvectors = std::move(rows);
}

DoubleMatrix PrincipalComponentScores(const DoubleMatrix& x, const dense::Kernels& kernels) {
  constexpr const char* kPlace = "matrix::PrincipalComponentScores";
  const FloatingPointScope environment;
  const Shape shape = dense::ShapeOf(x, kPlace);
  const Shape scores_shape{shape.rows, std::min(shape.rows, shape.columns)};
  DoubleMatrix scores = dense::MakeMatrix(scores_shape);
  if (scores_shape.columns == 0) return scores;
  Storage columns(shape), score_columns(scores_shape);
  dense::CopyToColumns(x, shape, columns.data());
  RequireFinite(columns.data(), shape.rows * shape.columns, kPlace, kScoreTexts);
  const int exponent = ScaleUnusual(columns.data(), shape.rows * shape.columns);
  RequireDone(
      kernels.singular_scores(columns.data(), shape.rows, shape.columns, score_columns.data()),
      kPlace, kScoreTexts);
  dense::CopyFromColumns(score_columns.data(), scores_shape, 0, scores);
  if (exponent != 0) {
    for (std::vector<double>& row : scores)
      for (double& number : row) number = std::ldexp(number, exponent);
  }
  return Settled(std::move(scores));
}

}  // namespace zavrel::matrix
