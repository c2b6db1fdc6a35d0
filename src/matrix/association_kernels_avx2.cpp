#define ZAV_VECTOR_WIDTH 4
#include "matrix/association_kernels.inl.h"

namespace zavrel {

const AssociationKernels& Avx2AssociationKernels() noexcept { return kKernels; }

}  // namespace zavrel
