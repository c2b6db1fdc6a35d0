#pragma once
// Matrices of numbers as arguments and results.

#include <optional>

#include "host/formula/argument_reader.h"
#include "host/formula/linear_algebra.h"

namespace zavhost {

/// The numbers of an argument; blanks, text and booleans are #VALUE!.
Matrix ReadMatrix(ArgumentReader& read, std::size_t index);
/// The matrix as an array, or the error if there is none.
Operand MatrixResult(const std::optional<Matrix>& matrix, ErrorCode otherwise);

}  // namespace zavhost
