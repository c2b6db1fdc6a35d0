#include "matrix/dense_kernels.h"

namespace zavrel::dense {

const Kernels kBaselineKernels{baseline::AddRowProducts,   baseline::Multiply,
                               baseline::Factor,           baseline::InvertColumns,
                               baseline::SelfAdjointEigen, baseline::SingularScores};
const Kernels kAvx2Kernels{avx2::AddRowProducts, avx2::Multiply,         avx2::Factor,
                           avx2::InvertColumns,  avx2::SelfAdjointEigen, avx2::SingularScores};

bool ProcessorHasAvx2() noexcept {
  static const bool has_avx2 = __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma");
  return has_avx2;
}

const Kernels& BestKernels() noexcept {
  return ProcessorHasAvx2() ? kAvx2Kernels : kBaselineKernels;
}

}  // namespace zavrel::dense
