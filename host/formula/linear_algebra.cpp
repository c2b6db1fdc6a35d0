#include "host/formula/linear_algebra.h"

#include <cmath>
#include <eigen3/Eigen/Dense>

namespace zavhost {
namespace {

using RowMajor = Eigen::Matrix<double, Eigen::Dynamic, Eigen::Dynamic, Eigen::RowMajor>;

Eigen::Index Signed(std::size_t size) { return static_cast<Eigen::Index>(size); }

Eigen::Map<const RowMajor> ViewOf(const Matrix& matrix) {
  return {matrix.values.data(), Signed(matrix.rows), Signed(matrix.columns)};
}

Matrix Stored(const RowMajor& matrix) {
  return {static_cast<std::size_t>(matrix.rows()), static_cast<std::size_t>(matrix.cols()),
          std::vector<double>(matrix.data(), matrix.data() + matrix.size())};
}

bool IsTooMuch(std::size_t a, std::size_t b, std::size_t c) {
  return static_cast<double>(a) * static_cast<double>(b) * static_cast<double>(c) > kLargestWork;
}

/// The mean, refined by the mean of the deviations from it.
double MeanOf(const Eigen::VectorXd& x) {
  const double mean = x.mean();
  return mean + (x.array() - mean).mean();
}

/// An orthonormal basis of the columns, and their coordinates in it.
struct Basis {
  Eigen::MatrixXd q;
  Eigen::MatrixXd r;
  std::vector<Eigen::Index> kept;  // the columns that are independent of those before them

  Eigen::Index size() const { return Signed(kept.size()); }
};

/// The Gram-Schmidt process, each step twice, which makes it as accurate as reflections and shows
/// what is left of a column. A column of which only rounding errors are left is not kept.
Basis BasisOf(const Eigen::MatrixXd& x) {
  constexpr double kIndependent = 1e-10;
  const Eigen::Index most = std::min(x.rows(), x.cols());
  Basis basis{Eigen::MatrixXd(x.rows(), most), Eigen::MatrixXd::Zero(most, most), {}};
  for (Eigen::Index column = 0; column < x.cols() && basis.size() < most; ++column) {
    const Eigen::Index size = basis.size();
    Eigen::VectorXd rest = x.col(column);
    const double norm = rest.stableNorm();
    Eigen::VectorXd coordinates = Eigen::VectorXd::Zero(size);
    for (int pass = 0; pass < 2; ++pass) {
      const Eigen::VectorXd along = basis.q.leftCols(size).transpose() * rest;
      rest.noalias() -= basis.q.leftCols(size) * along;
      coordinates += along;
    }
    const double left = rest.stableNorm();
    if (!(left > kIndependent * norm)) continue;
    basis.r.col(size).head(size) = coordinates;
    basis.r(size, size) = left;
    basis.q.col(size) = rest / left;
    basis.kept.push_back(column);
  }
  return basis;
}

}  // namespace

std::optional<Matrix> Product(const Matrix& a, const Matrix& b) {
  if (IsTooMuch(a.rows, a.columns, b.columns)) return std::nullopt;
  return Stored(ViewOf(a) * ViewOf(b));
}

std::optional<Matrix> Inverse(const Matrix& matrix) {
  if (IsTooMuch(matrix.rows, matrix.rows, matrix.rows)) return std::nullopt;
  const Eigen::PartialPivLU<RowMajor> lu(ViewOf(matrix));
  const auto pivots = lu.matrixLU().diagonal().array();
  if ((pivots == 0.0).any() || !pivots.isFinite().all()) return std::nullopt;
  return Stored(lu.inverse());
}

std::optional<double> Determinant(const Matrix& matrix) {
  if (IsTooMuch(matrix.rows, matrix.rows, matrix.rows)) return std::nullopt;
  return Eigen::PartialPivLU<RowMajor>(ViewOf(matrix)).determinant();
}

std::optional<LinearFit> FitLinear(const Matrix& x, std::span<const double> y, bool has_intercept) {
  if (IsTooMuch(x.rows, x.columns, x.columns)) return std::nullopt;
  Eigen::MatrixXd centred = ViewOf(x);
  Eigen::VectorXd response = Eigen::Map<const Eigen::VectorXd>(y.data(), Signed(y.size()));
  Eigen::VectorXd means = Eigen::VectorXd::Zero(centred.cols());
  double response_mean = 0.0;
  if (has_intercept) {
    response_mean = MeanOf(response);
    response.array() -= response_mean;
    for (Eigen::Index i = 0; i < centred.cols(); ++i) {
      means(i) = MeanOf(centred.col(i));
      centred.col(i).array() -= means(i);
    }
  }

  const Basis basis = BasisOf(centred);
  const Eigen::Index kept = basis.size();
  const auto q = basis.q.leftCols(kept);
  const auto r = basis.r.topLeftCorner(kept, kept).triangularView<Eigen::Upper>();
  Eigen::VectorXd along = q.transpose() * response;
  Eigen::VectorXd residuals = response - q * along;
  const Eigen::VectorXd correction = q.transpose() * residuals;
  along += correction;
  residuals.noalias() -= q * correction;

  LinearFit fit;
  fit.regressors = static_cast<double>(kept);
  const double rows = static_cast<double>(y.size());
  fit.degrees_of_freedom = rows - fit.regressors - (has_intercept ? 1.0 : 0.0);
  fit.regression_squares = along.squaredNorm();
  fit.residual_squares = fit.degrees_of_freedom > 0.0 ? residuals.squaredNorm() : 0.0;
  const double variance =
      fit.degrees_of_freedom > 0.0 ? fit.residual_squares / fit.degrees_of_freedom : 0.0;

  const Eigen::VectorXd slopes = r.solve(along);
  const Eigen::MatrixXd inverse = r.solve(Eigen::MatrixXd::Identity(kept, kept));
  Eigen::VectorXd kept_means(kept);
  fit.slopes.resize(x.columns);
  fit.slope_errors.resize(x.columns);
  fit.intercept = response_mean;
  for (Eigen::Index i = 0; i < kept; ++i) {
    const Eigen::Index column = basis.kept[static_cast<std::size_t>(i)];
    const auto place = static_cast<std::size_t>(column);
    fit.slopes[place] = slopes(i);
    fit.slope_errors[place] = std::sqrt(variance) * inverse.row(i).norm();
    fit.intercept -= slopes(i) * means(column);
    kept_means(i) = means(column);
  }
  if (has_intercept) {
    const double leverage = 1.0 / rows + (inverse.transpose() * kept_means).squaredNorm();
    fit.intercept_error = std::sqrt(variance * leverage);
  }
  return fit;
}

}  // namespace zavhost
