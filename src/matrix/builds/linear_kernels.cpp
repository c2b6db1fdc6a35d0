// Blocked product, LU decomposition and symmetric eigen-analysis.

#include <eigen3/Eigen/Eigenvalues>
#include <eigen3/Eigen/LU>

#include "matrix/builds/eigen_views.h"

namespace zavrel::dense::ZAV_EIGEN_BUILD {

void Multiply(const double* a, std::size_t rows, std::size_t inner, const double* b,
              std::size_t columns, double* out) {
  using RowMajor = Eigen::Matrix<double, Eigen::Dynamic, Eigen::Dynamic, Eigen::RowMajor>;
  Eigen::Map<RowMajor>(out, ToIndex(rows), ToIndex(columns)).noalias() =
      Eigen::Map<const RowMajor>(a, ToIndex(rows), ToIndex(inner)) *
      Eigen::Map<const RowMajor>(b, ToIndex(inner), ToIndex(columns));
}

int Factor(double* matrix, std::size_t n, int* places) {
  Eigen::Map<MatrixXd> view = View(matrix, n, n);
  const Eigen::PartialPivLU<Eigen::Ref<MatrixXd>> lu(view);
  Eigen::Map<Eigen::VectorXi>(places, ToIndex(n)) = lu.permutationP().indices();
  return lu.permutationP().determinant() > 0 ? 1 : -1;
}

void InvertColumns(const double* factors, const int* places, std::size_t n, std::size_t first,
                   std::size_t count, double* out) {
  const Eigen::Map<const MatrixXd> lu = View(factors, n, n);
  Eigen::Map<MatrixXd> block = View(out, n, count);
  block.setZero();
  for (std::size_t c = 0; c < count; ++c) block(places[first + c], ToIndex(c)) = 1;
  lu.triangularView<Eigen::UnitLower>().solveInPlace(block);
  lu.triangularView<Eigen::Upper>().solveInPlace(block);
}

Outcome SelfAdjointEigen(const double* matrix, std::size_t n, double* values, double* vectors) {
  const Eigen::SelfAdjointEigenSolver<MatrixXd> solver(
      View(matrix, n, n), vectors != nullptr ? Eigen::ComputeEigenvectors : Eigen::EigenvaluesOnly);
  if (solver.info() != Eigen::Success) return ToOutcome(solver.info());
  View(values, n, 1) = solver.eigenvalues();
  if (vectors != nullptr) View(vectors, n, n) = solver.eigenvectors();
  return Outcome::kDone;
}

}  // namespace zavrel::dense::ZAV_EIGEN_BUILD
