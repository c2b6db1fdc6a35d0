// Blocked product, LU decomposition and symmetric eigen-analysis, for every x86-64 processor.
//
// Eigen's namespace has another name here, so that the linker does not merge these functions with
// those of a file that uses Eigen with other options.
#define Eigen EigenBaseline
#define ZAV_DENSE_NAMESPACE baseline
#include "matrix/linear_kernels.inl.h"
