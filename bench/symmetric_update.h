#pragma once

#include <cstddef>

namespace zavrel::bench {

/// Adds X'X of some rows of a column-major matrix to the lower triangle of `sums` (columns x
/// columns), by the linear-algebra library compiled for AVX2.
void AddSymmetricUpdate(const double* x, std::size_t first_row, std::size_t rows,
                        std::size_t all_rows, std::size_t columns, double* sums);

}  // namespace zavrel::bench
