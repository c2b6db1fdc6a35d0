// Scores by singular value decomposition, for processors with AVX2 and FMA.
//
// An inline function of Eigen that is instantiated here and elsewhere under the same name would be
// kept once by the linker, perhaps with instructions that a processor lacks. Hence Eigen's
// namespace gets another name here; a test holds the built library to that.
#define Eigen EigenAvx2
#define ZAV_DENSE_NAMESPACE avx2
#include "matrix/singular_scores.inl.h"
