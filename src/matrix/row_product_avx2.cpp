// The product whose sums keep their order, for processors with AVX2 and FMA.
#define ZAV_DENSE_NAMESPACE avx2
#include "matrix/row_product.inl.h"
