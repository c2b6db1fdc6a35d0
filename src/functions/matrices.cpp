// Plain matrices for libraries of the suite that are built with the same compiler. Parameters and
// results are DoubleMatrix values; failures are the exceptions of diagnostics/vek_exception.h,
// which the caller catches.
#include "functions/association_matrix.h"
#include "matrix/matrix_operations.h"
#include "platform/export.h"

namespace zavrel {

// NOLINTBEGIN(performance-unnecessary-value-param): the callers' declarations pass values.

/// The covariance matrix of variables, one in each row.
ZAV_EXPORT DoubleMatrix CalculateCovarianceMatrixC(bool use_ranks, bool sample_divisor,
                                                   bool listwise_deletion, DoubleMatrix variables) {
  return AssociationMatrix(
      OptionsOf(Measure::kCovariance, use_ranks, sample_divisor, listwise_deletion), variables);
}
/// The same for correlations.
ZAV_EXPORT DoubleMatrix CalculateCorrelationMatrixC(bool use_ranks, bool sample_divisor,
                                                    bool listwise_deletion,
                                                    DoubleMatrix variables) {
  return AssociationMatrix(
      OptionsOf(Measure::kCorrelation, use_ranks, sample_divisor, listwise_deletion), variables);
}

ZAV_EXPORT DoubleMatrix MatrixAddC(DoubleMatrix a, DoubleMatrix b) { return MatrixAdd(a, b); }
ZAV_EXPORT DoubleMatrix MatrixMultiplyC(DoubleMatrix a, DoubleMatrix b) {
  return MatrixMultiply(a, b);
}
ZAV_EXPORT DoubleMatrix MatrixInverseC(DoubleMatrix a) { return MatrixInverse(a); }
ZAV_EXPORT double MatrixDeterminantC(DoubleMatrix a) { return MatrixDeterminant(a); }

// NOLINTEND(performance-unnecessary-value-param)

}  // namespace zavrel
