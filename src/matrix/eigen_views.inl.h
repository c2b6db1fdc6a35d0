// The views of plain memory that the dense kernels use. Included once for each instruction set,
// with ZAV_DENSE_NAMESPACE as its namespace.

#include <eigen3/Eigen/Core>

#include "matrix/dense_kernels.h"

namespace zavrel::dense::ZAV_DENSE_NAMESPACE {
namespace {

using Eigen::Index;
using Eigen::MatrixXd;

inline Index ToIndex(std::size_t size) { return static_cast<Index>(size); }

inline Eigen::Map<const MatrixXd> View(const double* matrix, std::size_t rows,
                                       std::size_t columns) {
  return {matrix, ToIndex(rows), ToIndex(columns)};
}
inline Eigen::Map<MatrixXd> View(double* matrix, std::size_t rows, std::size_t columns) {
  return {matrix, ToIndex(rows), ToIndex(columns)};
}

inline Outcome ToOutcome(Eigen::ComputationInfo info) {
  if (info == Eigen::Success) return Outcome::kDone;
  return info == Eigen::NoConvergence ? Outcome::kNoConvergence : Outcome::kInvalidValues;
}

}  // namespace
}  // namespace zavrel::dense::ZAV_DENSE_NAMESPACE
