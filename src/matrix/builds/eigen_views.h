#pragma once
// The views of plain memory that the functions of Eigen use. The files of this folder are compiled
// once for each instruction set, as the namespace ZAV_EIGEN_BUILD and with another name for
// Eigen's: if one of its inline functions were instantiated twice under the same name, the linker
// would keep only one of the two, perhaps with instructions that a processor lacks. A test of the
// built library checks this.

#include <eigen3/Eigen/Core>

#include "matrix/dense_kernels.h"

namespace zavrel::dense::ZAV_EIGEN_BUILD {
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
}  // namespace zavrel::dense::ZAV_EIGEN_BUILD
