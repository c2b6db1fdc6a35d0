// Matrices for macros: covariance and correlation, algebra, eigen-analysis, principal components.
//
// A macro declares matrices `ByRef a() As Double`, with two dimensions, observations or rows first.
// Arrays of another type, such as `Dim r() As Variant`, give VekInvalidDataType. Entry points that
// return a number return 0, or the number of the failure, which ZavrelGetExceptionInfoVB explains;
// on failure the result is not written. MatrixAddVB and its kin return their matrix or, on failure,
// an error value whose code is the failure's number: `If IsError(c) Then number = CLng(c)`.
#include <array>
#include <span>

#include "frame/macro_call.h"
#include "functions/association_matrix.h"
#include "macros/macro_memory.h"
#include "macros/windows/double_array.h"
#include "macros/windows/redim_vb_array.h"
#include "macros/windows/vb_array.h"
#include "macros/windows/vb_numbers.h"
#include "matrix/association.h"
#include "matrix/eigendata.h"
#include "matrix/matrix_operations.h"
#include "numbers/error_double.h"
#include "platform/export.h"

namespace zavrel {
namespace {

DoubleMatrix MatrixIn(SAFEARRAY** array) { return MatrixFromVbArray(ArrayAt(array)); }

// Two variables.

constexpr std::int32_t kDone = 0;
constexpr std::int32_t kUnusableSeries = 5;

/// Stores the measure of two series in `result` and returns 0. Returns 5 and stores nothing for
/// arrays that cannot be read, differ in length or have too few elements, without a place for the
/// result, or without memory.
std::int32_t OfTwo(const char* name, PairOptions pair, SAFEARRAY** x, SAFEARRAY** y,
                   double* result) noexcept {
  return MacroStatus<std::int32_t>(name, kUnusableSeries, [&]() -> std::int32_t {
    const VbNumbers first(x);
    const VbNumbers second(y);
    if (!IsPlaceFor(result) || !first.ok() || !second.ok()) return kUnusableSeries;
    const VariableColumn columns[] = {first.values(), second.values()};
    const std::size_t fewest = pair.form == Form::kSample ? 1 : 0;
    if (columns[0].size() != columns[1].size() || columns[0].size() <= fewest)
      return kUnusableSeries;
    const AssociationResult association = CalculateAssociationMatrix({.pair = pair}, columns);
    *result = association.error ? ErrorCodedNaN(*association.error) : association.matrix[0][1];
    return kDone;
  });
}

// Several variables.

DoubleMatrix Transposed(const DoubleMatrix& matrix) {
  DoubleMatrix transposed(matrix.empty() ? 0 : matrix[0].size(),
                          std::vector<double>(matrix.size()));
  for (std::size_t row = 0; row < matrix.size(); ++row) {
    for (std::size_t column = 0; column < matrix[row].size(); ++column)
      transposed[column][row] = matrix[row][column];
  }
  return transposed;
}

std::uint32_t AssociationInto(const char* name, const AssociationOptions& options, SAFEARRAY** data,
                              VARIANT* result) noexcept {
  return MacroCall(name, [&] {
    if (result == nullptr) return;
    const DoubleMatrix variables = Transposed(MatrixIn(data));
    StoreMatrix(AssociationMatrix(options, variables), result);
  });
}

// Algebra.

/// The value that a function returns instead of a matrix.
VARIANT FailureValue(std::uint32_t failure) {
  constexpr std::uint32_t kMacroError = 0x800A0000u;
  VARIANT variant;
  VariantInit(&variant);
  variant.vt = VT_ERROR;
  variant.scode = static_cast<SCODE>(kMacroError | (failure & 0xFFFFu));
  return variant;
}

template <class Compute>
VARIANT MatrixResult(const char* name, Compute compute) noexcept {
  VARIANT result;
  VariantInit(&result);
  const std::uint32_t failure = MacroCall(name, [&] { result = VariantOf(compute()); });
  return failure == 0 ? result : FailureValue(failure);
}

// Eigen-analysis.

std::uint32_t EigendataInto(const char* name, SAFEARRAY** matrix, VARIANT* values,
                            VARIANT* vectors) noexcept {
  return MacroCall(name, [&] {
    if (values == nullptr && vectors == nullptr) return;
    std::vector<double> eigenvalues;
    DoubleMatrix eigenvectors;
    matrix::eigendata_private(MatrixIn(matrix), eigenvalues, eigenvectors,
                              {.compute_vectors = vectors != nullptr, .descending = true});
    // Everything that needs memory is made before anything is written.
    PreparedVector prepared(eigenvalues, values);
    if (vectors != nullptr) StoreMatrix(eigenvectors, vectors);
    prepared.HandOver();
  });
}

}  // namespace

/// The sample covariance of two series of equal length, with at least two elements.
ZAV_EXPORT std::int32_t ZavrelCovarianceVB(SAFEARRAY** x, SAFEARRAY** y, double* result) {
  return OfTwo("ZavrelCovarianceVB", {Measure::kCovariance, Form::kSample}, x, y, result);
}
/// The population covariance, with at least one element.
ZAV_EXPORT std::int32_t ZavrelCovariancePVB(SAFEARRAY** x, SAFEARRAY** y, double* result) {
  return OfTwo("ZavrelCovariancePVB", {Measure::kCovariance, Form::kPopulation}, x, y, result);
}
/// Pearson's correlation coefficient, with at least one element. Without spread: the too-few code.
ZAV_EXPORT std::int32_t ZavrelCorrelationCoeffVB(SAFEARRAY** x, SAFEARRAY** y, double* result) {
  return OfTwo("ZavrelCorrelationCoeffVB", {Measure::kCorrelation, Form::kPopulation}, x, y,
               result);
}

/// Stores the covariance matrix of the columns of `data` (observations in rows) in `result`. An
/// option is true if it is not 0. Without a place for the result it does nothing and returns 0.
ZAV_EXPORT std::uint32_t CalculateCovarianceMatrixVB(std::int32_t use_ranks,
                                                     std::int32_t sample_divisor,
                                                     std::int32_t listwise_deletion,
                                                     SAFEARRAY** data, VARIANT* result) {
  return AssociationInto(
      "CalculateCovarianceMatrixVB",
      OptionsOf(Measure::kCovariance, use_ranks != 0, sample_divisor != 0, listwise_deletion != 0),
      data, result);
}
/// The same for correlations.
ZAV_EXPORT std::uint32_t CalculateCorrelationMatrixVB(std::int32_t use_ranks,
                                                      std::int32_t sample_divisor,
                                                      std::int32_t listwise_deletion,
                                                      SAFEARRAY** data, VARIANT* result) {
  return AssociationInto(
      "CalculateCorrelationMatrixVB",
      OptionsOf(Measure::kCorrelation, use_ranks != 0, sample_divisor != 0, listwise_deletion != 0),
      data, result);
}

ZAV_EXPORT VARIANT MatrixAddVB(SAFEARRAY** a, SAFEARRAY** b) {
  return MatrixResult("MatrixAddVB", [&] { return MatrixAdd(MatrixIn(a), MatrixIn(b)); });
}
ZAV_EXPORT VARIANT MatrixMultiplyVB(SAFEARRAY** a, SAFEARRAY** b) {
  return MatrixResult("MatrixMultiplyVB", [&] { return MatrixMultiply(MatrixIn(a), MatrixIn(b)); });
}
ZAV_EXPORT VARIANT MatrixInverseVB(SAFEARRAY** a) {
  return MatrixResult("MatrixInverseVB", [&] { return MatrixInverse(MatrixIn(a)); });
}
/// The determinant; on failure the not-computed code. The failure is recorded like every other.
ZAV_EXPORT double MatrixDeterminantVB(SAFEARRAY** a) {
  double determinant = ConditionDouble(kConditionNotComputed);
  MacroCall("MatrixDeterminantVB", [&] { determinant = MatrixDeterminant(MatrixIn(a)); });
  return determinant;
}

/// Stores the eigenvalues of a symmetric matrix, largest first, as a one-dimensional array.
ZAV_EXPORT std::uint32_t CalculateEigenvaluesVB(SAFEARRAY** matrix, VARIANT* eigenvalues) {
  return EigendataInto("CalculateEigenvaluesVB", matrix, eigenvalues, nullptr);
}
/// Stores its eigenvectors, as columns in the same order.
ZAV_EXPORT std::uint32_t CalculateEigenvectorsVB(SAFEARRAY** matrix, VARIANT* eigenvectors) {
  return EigendataInto("CalculateEigenvectorsVB", matrix, nullptr, eigenvectors);
}
/// Stores both, each if there is a place for it.
ZAV_EXPORT std::uint32_t CalculateEigendataVB(SAFEARRAY** matrix, VARIANT* eigenvalues,
                                              VARIANT* eigenvectors) {
  return EigendataInto("CalculateEigendataVB", matrix, eigenvalues, eigenvectors);
}
/// Stores the principal-component scores of the rows of `data`, neither centred nor scaled. Without
/// a place for them it does nothing and returns 0.
ZAV_EXPORT std::uint32_t CalculatePCAScoresVB(SAFEARRAY** data, VARIANT* scores) {
  return MacroCall("CalculatePCAScoresVB", [&] {
    if (scores != nullptr) StoreMatrix(matrix::PrincipalComponentScores(MatrixIn(data)), scores);
  });
}

}  // namespace zavrel
