// Blocked product, LU decomposition and symmetric eigen-analysis, for processors with AVX2 and FMA.
//
// If an inline function of Eigen were instantiated here and elsewhere under the same name, the
// linker would keep only one of them, perhaps with instructions that a processor lacks. Eigen's
// namespace therefore has another name here, which a test of the built library checks.
#define Eigen EigenAvx2
#define ZAV_DENSE_NAMESPACE avx2
#include "matrix/linear_kernels.inl.h"
