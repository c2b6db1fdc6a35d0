#include "matrix/eigendata.h"

#include <doctest/doctest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <tuple>

#include "contracts/message_ids.h"
#include "matrix/dense_kernels.h"
#include "sample_matrices.h"

namespace zavrel::tests {
namespace {

using matrix::PrincipalComponentScores;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kEpsilon = std::numeric_limits<double>::epsilon();

struct Eigendata {
  std::vector<double> values;
  DoubleMatrix vectors;
};

Eigendata Compute(const DoubleMatrix& matrix, bool compute_vectors = true, bool descending = true) {
  // What stood there before must not matter.
  Eigendata data{{7, 7, 7}, {{7}}};
  matrix::eigendata_private(matrix, data.values, data.vectors, {compute_vectors, descending});
  return data;
}

DoubleMatrix RandomSymmetric(std::size_t n) {
  DoubleMatrix matrix = RandomMatrix(n, n, 11);
  for (std::size_t r = 0; r < n; ++r)
    for (std::size_t c = 0; c < r; ++c) matrix[r][c] = matrix[c][r];
  return matrix;
}

TEST_CASE("R's eigenvalues and eigenvectors") {
  int count = 0;
  for (const auto& [name, recorded] : RecordedCases()) {
    if (!recorded.contains("eigenvalues")) continue;
    ++count;
    CAPTURE(name);
    const Eigendata data = Compute(recorded.at("matrix"));
    const std::vector<double> values = Transposed(recorded.at("eigenvalues"))[0];
    const double size = std::max(std::abs(values.front()), std::abs(values.back()));
    CHECK(LargestDifference({data.values}, {values}) <= 1e-12 * size);
    // A vector is as certain as its value stands apart from the others.
    double gap = size;
    for (std::size_t i = 1; i < values.size(); ++i) gap = std::min(gap, values[i - 1] - values[i]);
    const DoubleMatrix& vectors = recorded.at("eigenvectors");
    CHECK(LargestDifference(WithSignsLike(data.vectors, vectors), vectors) <=
          std::max(1e-12, 8 * kEpsilon * size / gap));
  }
  CHECK(count == 4);
}

TEST_CASE("Order and options") {
  const DoubleMatrix matrix{{2, 1}, {1, 2}};
  const double half = std::sqrt(0.5);
  const DoubleMatrix vectors{{half, half}, {-half, half}};
  const Eigendata ascending = Compute(matrix, true, false);
  CHECK(LargestDifference({ascending.values}, {{1, 3}}) < 1e-15);
  CHECK(LargestDifference(WithSignsLike(ascending.vectors, vectors), vectors) < 1e-15);
  CHECK(Compute(matrix, false).vectors.empty());
}

TEST_CASE("Eigenvectors are orthonormal and rebuild the matrix") {
  for (const std::size_t n : {1u, 2u, 3u, 31u, 90u}) {
    for (const double scale : {1.0, 1e300, 1e-300}) {
      INFO("n = ", n, ", scale = ", scale);
      DoubleMatrix matrix = RandomSymmetric(n);
      for (auto& row : matrix)
        for (double& number : row) number *= scale;
      const auto [values, vectors] = Compute(matrix);
      const double limit = 20 * kEpsilon * std::sqrt(static_cast<double>(n));
      CHECK(std::ranges::is_sorted(values, std::ranges::greater{}));
      CHECK(LargestDifference(PlainProduct(Transposed(vectors), vectors), Identity(n)) < limit);
      DoubleMatrix scaled = vectors;
      for (auto& row : scaled)
        for (std::size_t c = 0; c < n; ++c) row[c] *= values[c];
      CHECK(LargestDifference(PlainProduct(scaled, Transposed(vectors)), matrix) <
            limit * std::max(std::abs(values.front()), std::abs(values.back())));
      CHECK(LargestDifference({Compute(matrix, false).values}, {values}) <
            limit * std::max(std::abs(values.front()), std::abs(values.back())));
    }
  }
}

TEST_CASE("Equal eigenvalues, and none") {
  CHECK(Compute(Identity(4)).values == std::vector<double>{1, 1, 1, 1});
  CHECK(Compute(DoubleMatrix(3, std::vector<double>(3))).values == std::vector<double>(3));
  const Eigendata nothing = Compute({});
  CHECK(nothing.values.empty());
  CHECK(nothing.vectors.empty());
}

TEST_CASE("What is refused, in the order of the tests") {
  CHECK_THROWS_AS(Compute({{1, 2, 3}, {4, 5, 6}}), VekMatrixNotSquare);  // nor symmetric
  CHECK_THROWS_AS(Compute({{kNan, 2}, {1, 1}}), VekMatrixNotSymmetric);
  CHECK_THROWS_AS(Compute({{0, 1 + kEpsilon}, {1, 0}}), VekMatrixNotSymmetric);
  CHECK_THROWS_AS(Compute({{1, kInfinity}, {kInfinity, 1}}), VekInvalidDataType);
  CHECK_THROWS_AS(Compute({{1, 0}, {0, kNan}}), VekInvalidDataType);
  CHECK_THROWS_AS(Compute({{1, 2}, {3}}), VekArraySizeError);
}

TEST_CASE("R's principal component scores") {
  int count = 0;
  for (const auto& [name, recorded] : RecordedCases()) {
    if (!recorded.contains("scores")) continue;
    ++count;
    CAPTURE(name);
    const DoubleMatrix& scores = recorded.at("scores");
    CHECK(LargestDifference(WithSignsLike(PrincipalComponentScores(recorded.at("data")), scores),
                            scores) <= 1e-12 * LargestSize(scores));
  }
  CHECK(count == 4);
}

/// Scores are X in other axes: their products by pairs of rows are those of X, their columns stand
/// at right angles, longest first.
void CheckScores(const DoubleMatrix& x) {
  const std::size_t rows = x.size(), columns = x[0].size();
  INFO("rows = ", rows, ", columns = ", columns);
  const DoubleMatrix scores = PrincipalComponentScores(x);
  REQUIRE(scores.size() == rows);
  REQUIRE(scores[0].size() == std::min(rows, columns));
  DoubleMatrix squares = PlainProduct(Transposed(scores), scores);
  const double limit = 20 * kEpsilon * static_cast<double>(std::max(rows, columns)) * squares[0][0];
  CHECK(LargestDifference(PlainProduct(scores, Transposed(scores)),
                          PlainProduct(x, Transposed(x))) <= limit);
  for (std::size_t i = 0; i < squares.size(); ++i) {
    if (i > 0) CHECK(squares[i][i] <= squares[i - 1][i - 1] + limit);
    for (std::size_t j = 0; j < i; ++j) CHECK(std::abs(squares[i][j]) <= limit);
  }
}

TEST_CASE("Scores are the data on their principal axes") {
  for (const auto& [rows, columns] : {std::tuple{1, 1},
                                      {1, 6},
                                      {6, 1},
                                      {2, 2},
                                      {40, 20},
                                      {39, 20},
                                      {20, 40},
                                      {21, 40},
                                      {70, 33},
                                      {33, 70},
                                      {300, 17}}) {
    CheckScores(RandomMatrix(static_cast<std::size_t>(rows), static_cast<std::size_t>(columns), 9));
  }
  // Of rank 2, and of rank 0.
  CheckScores(PlainProduct(RandomMatrix(30, 2, 1), RandomMatrix(2, 24, 2)));
  CheckScores(PlainProduct(RandomMatrix(90, 2, 1), RandomMatrix(2, 20, 2)));
  CheckScores(DoubleMatrix(50, std::vector<double>(3)));
  CheckScores(DoubleMatrix(20, std::vector<double>(20)));
}

TEST_CASE("Scores of unusual data") {
  const DoubleMatrix column{{3}, {-1}, {0.5}, {1e-10}};
  CHECK(LargestDifference(WithSignsLike(PrincipalComponentScores(column), column), column) < 1e-15);
  CHECK(PrincipalComponentScores({}).empty());
  CHECK(PrincipalComponentScores({{}, {}}) == DoubleMatrix{{}, {}});
  CHECK_THROWS_AS(PrincipalComponentScores({{1, 2}, {kNan, 3}}), VekInvalidDataType);
  CHECK_THROWS_AS(PrincipalComponentScores({{1, -kInfinity}}), VekInvalidDataType);
  CHECK_THROWS_AS(PrincipalComponentScores({{1, 2}, {3}}), VekArraySizeError);
  for (const double scale : {1e-300, 1e300}) {
    for (const std::size_t rows : {30u, 90u}) {
      DoubleMatrix x = RandomMatrix(rows, 20, 3);
      const DoubleMatrix plain = PrincipalComponentScores(x);
      for (auto& row : x)
        for (double& number : row) number *= scale;
      DoubleMatrix scores = PrincipalComponentScores(x);
      for (auto& row : scores)
        for (double& number : row) number /= scale;
      CHECK(LargestDifference(WithSignsLike(scores, plain), plain) < 1e-12);
    }
  }
}

TEST_CASE("Both instruction sets find the same axes") {
  if (&dense::BestKernels() != &dense::kAvx2Kernels) return;
  const DoubleMatrix symmetric = RandomSymmetric(40), x = RandomMatrix(100, 40, 10);
  std::array<Eigendata, 2> analyses;
  std::array<DoubleMatrix, 2> scores;
  for (std::size_t i = 0; i < 2; ++i) {
    const dense::Kernels& kernels = i == 0 ? dense::kBaselineKernels : dense::kAvx2Kernels;
    matrix::eigendata_private(symmetric, analyses[i].values, analyses[i].vectors, {}, kernels);
    scores[i] = PrincipalComponentScores(x, kernels);
  }
  CHECK(LargestDifference({analyses[0].values}, {analyses[1].values}) < 1e-13);
  CHECK(LargestDifference(WithSignsLike(scores[0], scores[1]), scores[1]) < 1e-12);
}

TEST_CASE("A solver that does not converge") {
  using dense::Outcome;
  dense::Kernels kernels = dense::BestKernels();
  kernels.self_adjoint_eigen = [](const double*, std::size_t, double*, double*) {
    return Outcome::kNoConvergence;
  };
  kernels.singular_scores = [](double*, std::size_t, std::size_t, double*) {
    return Outcome::kNoConvergence;
  };
  Eigendata kept{{7}, {{7}}};
  try {
    matrix::eigendata_private({{1, 2}, {2, 1}}, kept.values, kept.vectors, {}, kernels);
    FAIL("no failure");
  } catch (const VekNoConvergence& failure) {
    CHECK(failure.message_id() == messages::kMessageEigenNoConvergence);
  }
  CHECK((kept.values == std::vector<double>{7} && kept.vectors == DoubleMatrix{{7}}));
  CHECK_THROWS_AS(PrincipalComponentScores({{1, 2}, {3, 4}}, kernels), VekNoConvergence);
}

}  // namespace
}  // namespace zavrel::tests
