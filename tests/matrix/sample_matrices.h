#pragma once
// Matrices to compute with, and the plainest form of what is computed.

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>

#include "diagnostics/vek_exception.h"
#include "numbers/double_matrix.h"

namespace zavrel::tests {

/// What R computed of one matrix, by name: see data/make_matrices.R.
using RecordedCase = std::map<std::string, DoubleMatrix>;
std::map<std::string, RecordedCase> RecordedCases();

/// Numbers in [-1, 1).
DoubleMatrix RandomMatrix(std::size_t rows, std::size_t columns, std::uint32_t seed);
DoubleMatrix Identity(std::size_t n);
DoubleMatrix Transposed(const DoubleMatrix& matrix);
/// Three plain loops.
DoubleMatrix PlainProduct(const DoubleMatrix& a, const DoubleMatrix& b);

double LargestSize(const DoubleMatrix& matrix);
/// The largest difference of two elements; infinite when the shapes differ or one is not a number.
double LargestDifference(const DoubleMatrix& a, const DoubleMatrix& b);
/// Whether all bits agree, those of not-a-numbers excepted.
bool AreIdentical(const DoubleMatrix& a, const DoubleMatrix& b);
/// `matrix` with its columns negated where that brings them nearer to those of `like`.
DoubleMatrix WithSignsLike(DoubleMatrix matrix, const DoubleMatrix& like);

}  // namespace zavrel::tests
