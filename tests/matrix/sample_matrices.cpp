#include "sample_matrices.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <random>

#include "support/csv_lines.h"

namespace zavrel::tests {

std::map<std::string, RecordedCase> RecordedCases() {
  std::map<std::string, RecordedCase> cases;
  for (const auto& [kind, texts, numbers] : CsvLines("matrices.csv")) {
    const auto rows = static_cast<std::size_t>(numbers[1]);
    DoubleMatrix values(rows, std::vector<double>(static_cast<std::size_t>(numbers[2])));
    auto next = numbers.begin() + 3;
    for (std::vector<double>& row : values) std::ranges::generate(row, [&] { return *next++; });
    cases[texts[0]][texts[1]] = std::move(values);
  }
  return cases;
}

DoubleMatrix RandomMatrix(std::size_t rows, std::size_t columns, std::uint32_t seed) {
  std::mt19937 random(seed);
  std::uniform_real_distribution<double> number(-1, 1);
  DoubleMatrix matrix(rows, std::vector<double>(columns));
  for (std::vector<double>& row : matrix)
    std::ranges::generate(row, [&] { return number(random); });
  return matrix;
}

DoubleMatrix Identity(std::size_t n) {
  DoubleMatrix matrix(n, std::vector<double>(n));
  for (std::size_t i = 0; i < n; ++i) matrix[i][i] = 1;
  return matrix;
}

DoubleMatrix Transposed(const DoubleMatrix& matrix) {
  DoubleMatrix transposed(matrix.empty() ? 0 : matrix[0].size(),
                          std::vector<double>(matrix.size()));
  for (std::size_t r = 0; r < matrix.size(); ++r)
    for (std::size_t c = 0; c < transposed.size(); ++c) transposed[c][r] = matrix[r][c];
  return transposed;
}

DoubleMatrix PlainProduct(const DoubleMatrix& a, const DoubleMatrix& b) {
  DoubleMatrix product(a.size(), std::vector<double>(b.empty() ? 0 : b[0].size()));
  for (std::size_t r = 0; r < a.size(); ++r)
    for (std::size_t c = 0; c < product[r].size(); ++c)
      for (std::size_t m = 0; m < b.size(); ++m) product[r][c] += a[r][m] * b[m][c];
  return product;
}

double LargestSize(const DoubleMatrix& matrix) {
  return LargestDifference(matrix,
                           DoubleMatrix(matrix.size(), std::vector<double>(matrix.front().size())));
}

double LargestDifference(const DoubleMatrix& a, const DoubleMatrix& b) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  if (a.size() != b.size()) return kInfinity;
  double largest = 0;
  for (std::size_t r = 0; r < a.size(); ++r) {
    if (a[r].size() != b[r].size()) return kInfinity;
    for (std::size_t c = 0; c < a[r].size(); ++c) {
      const double difference = std::abs(a[r][c] - b[r][c]);
      if (std::isnan(difference)) return kInfinity;
      largest = std::max(largest, difference);
    }
  }
  return largest;
}

bool AreIdentical(const DoubleMatrix& a, const DoubleMatrix& b) {
  return std::ranges::equal(a, b, [](const auto& a_row, const auto& b_row) {
    return std::ranges::equal(a_row, b_row, [](double x, double y) {
      return (std::isnan(x) && std::isnan(y)) ||
             std::bit_cast<std::uint64_t>(x) == std::bit_cast<std::uint64_t>(y);
    });
  });
}

DoubleMatrix WithSignsLike(DoubleMatrix matrix, const DoubleMatrix& like) {
  for (std::size_t c = 0; c < matrix.front().size(); ++c) {
    double product = 0;
    for (std::size_t r = 0; r < matrix.size(); ++r) product += matrix[r][c] * like[r][c];
    if (product >= 0) continue;
    for (std::vector<double>& row : matrix) row[c] = -row[c];
  }
  return matrix;
}

}  // namespace zavrel::tests
