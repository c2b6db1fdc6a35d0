// Scores by singular value decomposition. A separate file, since it takes longest to compile.

#include <eigen3/Eigen/QR>
#include <eigen3/Eigen/SVD>

#include "matrix/builds/eigen_views.h"

namespace zavrel::dense::ZAV_EIGEN_BUILD {
namespace {

// A matrix with at least this many times more rows than columns is first reduced to a triangle.
constexpr std::size_t kTall = 2;

Outcome ScoresOf(const Eigen::Ref<const MatrixXd>& x, Eigen::Ref<MatrixXd> scores) {
  const Eigen::BDCSVD<MatrixXd> svd(x, Eigen::ComputeThinU);
  if (svd.info() != Eigen::Success) return ToOutcome(svd.info());
  scores.noalias() = svd.matrixU() * svd.singularValues().asDiagonal();
  return Outcome::kDone;
}

}  // namespace

Outcome SingularScores(double* x, std::size_t rows, std::size_t columns, double* scores) {
  const Index count = ToIndex(rows < columns ? rows : columns);
  Eigen::Map<MatrixXd> out = View(scores, rows, rows < columns ? rows : columns);
  if (columns / kTall >= rows) {
    // X' = Q R: X and R' have the same scores.
    const Eigen::HouseholderQR<MatrixXd> qr(View(x, rows, columns).transpose());
    const MatrixXd lower = qr.matrixQR().topRows(count).triangularView<Eigen::Upper>().transpose();
    return ScoresOf(lower, out);
  }
  if (rows / kTall >= columns) {
    // X = Q R: the scores of X are Q times those of R. Both replace X in its place.
    Eigen::Map<MatrixXd> data = View(x, rows, columns);
    const Eigen::HouseholderQR<Eigen::Ref<MatrixXd>> qr(data);
    const MatrixXd upper = qr.matrixQR().topRows(count).triangularView<Eigen::Upper>();
    out.bottomRows(ToIndex(rows) - count).setZero();
    const Outcome outcome = ScoresOf(upper, out.topRows(count));
    if (outcome == Outcome::kDone) out.applyOnTheLeft(qr.householderQ());
    return outcome;
  }
  return ScoresOf(View(x, rows, columns), out);
}

}  // namespace zavrel::dense::ZAV_EIGEN_BUILD
