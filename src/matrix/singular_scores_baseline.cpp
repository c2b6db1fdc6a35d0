// Scores by singular value decomposition, for every x86-64 processor.
//
// Eigen's namespace has another name here, so that the linker does not merge these functions with
// those of a file that uses Eigen with other options.
#define Eigen EigenBaseline
#define ZAV_DENSE_NAMESPACE baseline
#include "matrix/singular_scores.inl.h"
