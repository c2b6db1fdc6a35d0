// The library under a name of its own: compiled for AVX2, its inline functions must not be those
// that the linker keeps for the rest.
#define Eigen eigen_for_avx2
#include <Eigen/Core>

#include "symmetric_update.h"

namespace zavrel::bench {

void AddSymmetricUpdate(const double* x, std::size_t first_row, std::size_t rows,
                        std::size_t all_rows, std::size_t columns, double* sums) {
  using Eigen::Index;
  const auto k = static_cast<Index>(columns);
  const Eigen::Map<const Eigen::MatrixXd, 0, Eigen::OuterStride<>> part(
      x + first_row, static_cast<Index>(rows), k,
      Eigen::OuterStride<>(static_cast<Index>(all_rows)));
  Eigen::Map<Eigen::MatrixXd>(sums, k, k)
      .selfadjointView<Eigen::Lower>()
      .rankUpdate(part.transpose());
}

}  // namespace zavrel::bench
