// The library under another name: the linker must not use its inline functions, which are compiled
// for AVX2, for the rest of the program.
#define Eigen eigen_for_avx2
#include "library_avx2.h"

#include <eigen3/Eigen/Core>
#include <eigen3/Eigen/Eigenvalues>
#include <eigen3/Eigen/LU>
#include <eigen3/Eigen/SVD>

namespace zavrel::bench {

using Eigen::Index;
using Eigen::MatrixXd;

void AddSymmetricUpdate(const double* x, std::size_t first_row, std::size_t rows,
                        std::size_t all_rows, std::size_t columns, double* sums) {
  const auto k = static_cast<Index>(columns);
  const Eigen::Map<const MatrixXd, 0, Eigen::OuterStride<>> part(
      x + first_row, static_cast<Index>(rows), k,
      Eigen::OuterStride<>(static_cast<Index>(all_rows)));
  Eigen::Map<MatrixXd>(sums, k, k).selfadjointView<Eigen::Lower>().rankUpdate(part.transpose());
}

struct LibraryMatrix::Numbers {
  MatrixXd matrix;
};

LibraryMatrix::LibraryMatrix(const std::vector<std::vector<double>>& rows)
    : numbers_(std::make_unique<Numbers>()) {
  MatrixXd& matrix = numbers_->matrix;
  matrix.resize(static_cast<Index>(rows.size()), static_cast<Index>(rows.at(0).size()));
  for (Index r = 0; r < matrix.rows(); ++r)
    for (Index c = 0; c < matrix.cols(); ++c)
      matrix(r, c) = rows[static_cast<std::size_t>(r)][static_cast<std::size_t>(c)];
}
LibraryMatrix::~LibraryMatrix() = default;

void LibraryMatrix::MultiplyRows(std::size_t first, std::size_t count, LibraryMatrix& out) const {
  const auto begin = static_cast<Index>(first), rows = static_cast<Index>(count);
  const MatrixXd& matrix = numbers_->matrix;
  out.numbers_->matrix.middleRows(begin, rows).noalias() = matrix.middleRows(begin, rows) * matrix;
}

double LibraryMatrix::Inverse() const {
  const MatrixXd inverse = numbers_->matrix.inverse();
  return inverse(0, 0);
}

double LibraryMatrix::Determinant() const { return numbers_->matrix.determinant(); }

double LibraryMatrix::EigenvaluesAndVectors() const {
  const Eigen::SelfAdjointEigenSolver<MatrixXd> solver(numbers_->matrix);
  return solver.eigenvalues()(0) + solver.eigenvectors()(0, 0);
}

double LibraryMatrix::Scores() const {
  const Eigen::BDCSVD<MatrixXd> svd(numbers_->matrix, Eigen::ComputeThinU);
  const MatrixXd scores = svd.matrixU() * svd.singularValues().asDiagonal();
  return scores(0, 0);
}

}  // namespace zavrel::bench
