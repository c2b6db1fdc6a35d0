#include "matrix/matrix_operations.h"

#include <doctest/doctest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <tuple>
#include <vector>

#include "matrix/dense_kernels.h"
#include "matrix/dense_storage.h"
#include "matrix/eigendata.h"
#include "sample_matrices.h"
#include "support/each_target.h"
#include "support/foreign_environment.h"

namespace zavrel::tests {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kEpsilon = std::numeric_limits<double>::epsilon();

bool HasNonFinite(const DoubleMatrix& matrix) {
  return std::ranges::any_of(matrix, [](const auto& row) {
    return std::ranges::any_of(row, [](double number) { return !std::isfinite(number); });
  });
}

TEST_CASE("The sum has the shape of the first matrix") {
  CHECK(MatrixAdd({{1, 2}, {3, kInfinity}}, {{10, 20, 9}, {30, 40, 9}, {9, 9, 9}}) ==
        DoubleMatrix{{11, 22}, {33, kInfinity}});
  CHECK(std::isnan(MatrixAdd({{-kInfinity}}, {{kInfinity}})[0][0]));
  CHECK(MatrixAdd({}, {{1}}).empty());
  CHECK_THROWS_AS(MatrixAdd({{1, 2}}, {{1}}), VekArraySizeError);
  CHECK_THROWS_AS(MatrixAdd({{1}, {2}}, {{1}}), VekArraySizeError);
  CHECK_THROWS_AS(MatrixAdd({{1}}, {}), VekArraySizeError);
  CHECK_THROWS_AS(MatrixAdd({{1, 2}, {3}}, {{1, 2}, {3, 4}}), VekArraySizeError);
  CHECK_THROWS_AS(MatrixAdd({{1}, {3}}, {{1}, {3}, {}}), VekArraySizeError);
}

TEST_CASE("The caller's floating-point environment makes no difference") {
  const DoubleMatrix a = RandomMatrix(150, 150, 1), b = RandomMatrix(150, 150, 2);
  const DoubleMatrix covariances = MatrixMultiply(a, Transposed(a));
  const auto compute = [&] {
    const matrix::EigendataOptions options{.compute_vectors = true};
    std::vector<double> values;
    DoubleMatrix vectors;
    matrix::eigendata_private(covariances, values, vectors, options);
    return std::array{MatrixAdd(a, b),
                      MatrixMultiply(a, b),
                      MatrixMultiply({{1e308, 1e-200}}, {{10}, {1e-120}}),
                      MatrixInverse(a),
                      DoubleMatrix{{MatrixDeterminant(a)}},
                      DoubleMatrix{values},
                      vectors,
                      matrix::PrincipalComponentScores(a)};
  };
  const auto expected = compute();
  auto found = expected;
  {
    const ForeignEnvironment environment;
    found = compute();
  }
  for (std::size_t i = 0; i < expected.size(); ++i) {
    CAPTURE(i);
    CHECK(AreIdentical(found[i], expected[i]));
  }
}

TEST_CASE("Each element of a product is summed in order, wherever it is computed") {
  const auto check = [](std::size_t rows, std::size_t inner, std::size_t columns, bool is_finite) {
    INFO("rows = ", rows, ", inner = ", inner, ", columns = ", columns);
    DoubleMatrix a = RandomMatrix(rows, inner, 1), b = RandomMatrix(inner, columns, 2);
    if (!is_finite) {
      a[rows / 2][inner / 2] = kInfinity;
      b[inner / 3][columns - 1] = kNan;
      b[inner / 2][0] = 0;
    }
    const DoubleMatrix plain = PlainProduct(a, b);
    EachTarget([&] { CHECK(AreIdentical(MatrixMultiply(a, b), plain)); });
  };
  for (const auto& [rows, inner, columns] : {std::tuple{1, 1, 1},
                                             {1, 200, 1},
                                             {200, 1, 130},
                                             {1, 100, 77},
                                             {3, 2, 5},
                                             {4, 97, 8},
                                             {5, 96, 9},
                                             {67, 193, 33},
                                             {130, 40, 47},
                                             {64, 300, 66}}) {
    for (const bool is_finite : {true, false})
      check(static_cast<std::size_t>(rows), static_cast<std::size_t>(inner),
            static_cast<std::size_t>(columns), is_finite);
  }
}

TEST_CASE("Operands that do not go together") {
  CHECK_THROWS_AS(MatrixMultiply({{1, 2}}, {{1, 2}}), VekArraySizeError);
  CHECK_THROWS_AS(MatrixMultiply({}, {{1}}), VekArraySizeError);
  CHECK_THROWS_AS(MatrixMultiply({{1}}, {}), VekArraySizeError);
  CHECK_THROWS_AS(MatrixMultiply({{1, 2}, {3}}, {{1}, {2}}), VekArraySizeError);
  CHECK_THROWS_AS(MatrixMultiply({{1, 2}}, {{1}, {2, 3}}), VekArraySizeError);
  CHECK(MatrixMultiply({}, {}).empty());
  CHECK(MatrixMultiply({{}, {}}, {}) == DoubleMatrix{{}, {}});
  CHECK_THROWS_AS(dense::CheckedCount({std::size_t{1} << 32, std::size_t{1} << 31}),
                  std::bad_alloc);
}

TEST_CASE("A product of large matrices, which is computed in blocks") {
  // Two entries in each row of A, so that the expected product is cheap.
  constexpr std::size_t kSize = 1025;
  DoubleMatrix a(kSize + 2, std::vector<double>(kSize));
  const DoubleMatrix b = RandomMatrix(kSize, kSize + 1, 5);
  DoubleMatrix expected(kSize + 2, std::vector<double>(kSize + 1));
  for (std::size_t r = 0; r < a.size(); ++r) {
    const std::size_t first = r * 7 % kSize, second = r * 11 % kSize;
    a[r][first] += 2;
    a[r][second] -= 1;
    for (std::size_t c = 0; c < kSize + 1; ++c) expected[r][c] = 2 * b[first][c] - b[second][c];
  }
  CHECK(LargestDifference(MatrixMultiply(a, b), expected) <= kEpsilon);
}

TEST_CASE("R's inverses and determinants") {
  int count = 0;
  for (const auto& [name, recorded] : RecordedCases()) {
    if (!recorded.contains("inverse")) continue;
    ++count;
    CAPTURE(name);
    const double limit = std::max(1e-12, 4 * kEpsilon * recorded.at("condition")[0][0]);
    const DoubleMatrix& matrix = recorded.at("matrix");
    const DoubleMatrix& inverse = recorded.at("inverse");
    CHECK(LargestDifference(MatrixInverse(matrix), inverse) <= limit * LargestSize(inverse));
    const double determinant = recorded.at("determinant")[0][0];
    CHECK(std::abs(MatrixDeterminant(matrix) - determinant) <= limit * std::abs(determinant));
  }
  CHECK(count == 7);
}

TEST_CASE("A matrix times its inverse is the identity") {
  for (const std::size_t n : {1u, 2u, 5u, 17u, 128u, 150u}) {
    CAPTURE(n);
    const DoubleMatrix matrix = RandomMatrix(n, n, 6);
    const DoubleMatrix inverse = MatrixInverse(matrix);
    const double limit = 4 * kEpsilon * static_cast<double>(n) * LargestSize(inverse);
    CHECK(LargestDifference(PlainProduct(matrix, inverse), Identity(n)) <= limit);
    CHECK(LargestDifference(PlainProduct(inverse, matrix), Identity(n)) <= limit);
  }
  CHECK(MatrixInverse({}).empty());
}

TEST_CASE("Determinants that are known") {
  CHECK(MatrixDeterminant({}) == 1);
  CHECK(MatrixDeterminant({{-3}}) == -3);
  CHECK(MatrixDeterminant({{0, 1}, {1, 0}}) == -1);
  CHECK(MatrixDeterminant({{0, 1, 0}, {0, 0, 1}, {1, 0, 0}}) == 1);
  CHECK(MatrixDeterminant({{2, 7, 1}, {0, 3, 8}, {0, 0, -4}}) == -24);
  // Row pivoting: 3 is the first pivot, then 2 - 1 * 4 / 3.
  CHECK(MatrixDeterminant({{1, 2}, {3, 4}}) == -3 * (2 - 1.0 / 3 * 4));
}

TEST_CASE("Singular and non-finite matrices pass through") {
  CHECK(MatrixDeterminant({{1, 2}, {2, 4}}) == 0);
  CHECK(std::abs(MatrixDeterminant({{1, 2, 3}, {4, 5, 6}, {7, 8, 9}})) < 1e-14);
  CHECK(MatrixDeterminant({{0, 0}, {0, 0}}) == 0);
  CHECK(HasNonFinite(MatrixInverse({{1, 2}, {2, 4}})));
  CHECK(HasNonFinite(MatrixInverse({{0}})));
  CHECK(HasNonFinite(MatrixInverse(DoubleMatrix(150, std::vector<double>(150)))));
  for (const double bad : {kNan, kInfinity}) {
    for (const std::size_t n : {1u, 3u, 150u}) {
      DoubleMatrix matrix = RandomMatrix(n, n, 7);
      matrix[n / 2][n / 2] = bad;
      CHECK_NOTHROW(MatrixInverse(matrix));
      CHECK_FALSE(std::isfinite(MatrixDeterminant(matrix)));
      CHECK_NOTHROW(MatrixInverse(DoubleMatrix(n, std::vector<double>(n, bad))));
    }
  }
}

TEST_CASE("Matrices that are not square") {
  for (const DoubleMatrix& matrix : {DoubleMatrix{{1, 2, 3}, {4, 5, 6}}, DoubleMatrix{{}}}) {
    CHECK_THROWS_AS(MatrixInverse(matrix), VekMatrixNotSquare);
    CHECK_THROWS_AS(MatrixDeterminant(matrix), VekMatrixNotSquare);
  }
  CHECK_THROWS_AS(MatrixInverse({{1, 2}, {3}}), VekArraySizeError);
  CHECK_THROWS_AS(MatrixDeterminant({{1}, {3, 4}}), VekArraySizeError);
}

TEST_CASE("Both instruction sets factor and multiply alike") {
  if (&dense::BestKernels() != &dense::kAvx2Kernels) return;
  constexpr std::size_t kSize = 70;
  const dense::Shape shape{kSize, kSize};
  const DoubleMatrix matrix = RandomMatrix(kSize, kSize, 8);
  std::array<DoubleMatrix, 2> inverses, products;
  for (std::size_t i = 0; i < 2; ++i) {
    const dense::Kernels& kernels = i == 0 ? dense::kBaselineKernels : dense::kAvx2Kernels;
    dense::Storage dense_matrix(shape), out(shape);
    dense::CopyRows(matrix, shape, dense_matrix.data());
    kernels.multiply(dense_matrix.data(), kSize, kSize, dense_matrix.data(), kSize, out.data());
    products[i] = dense::MakeMatrix(shape);
    dense::CopyFromColumns(out.data(), shape, 0, products[i]);
    std::array<int, kSize> places{};
    kernels.factor(dense_matrix.data(), kSize, places.data());
    kernels.invert_columns(dense_matrix.data(), places.data(), kSize, 0, kSize, out.data());
    inverses[i] = dense::MakeMatrix(shape);
    dense::CopyFromColumns(out.data(), shape, 0, inverses[i]);
  }
  CHECK(LargestDifference(Transposed(products[0]), PlainProduct(matrix, matrix)) < 1e-14);
  CHECK(LargestDifference(products[0], products[1]) < 1e-14);
  CHECK(LargestDifference(inverses[0], inverses[1]) < 1e-12 * LargestSize(inverses[0]));
}

}  // namespace
}  // namespace zavrel::tests
