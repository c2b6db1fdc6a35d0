// The product whose sums keep their order, for every x86-64 processor.
#define ZAV_DENSE_NAMESPACE baseline
#include "matrix/row_product.inl.h"
