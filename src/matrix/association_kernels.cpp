#define ZAV_VECTOR_WIDTH 2
#include "matrix/association_kernels.inl.h"

namespace zavrel {

const AssociationKernels& BaselineAssociationKernels() noexcept { return kKernels; }

const AssociationKernels& ChosenAssociationKernels() noexcept {
  static const bool has_avx2 = __builtin_cpu_supports("avx2") != 0;
  return has_avx2 ? Avx2AssociationKernels() : kKernels;
}

}  // namespace zavrel
