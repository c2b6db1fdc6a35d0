#pragma once

#include <vector>

namespace zavrel {

/// A matrix as a sequence of rows of doubles; the column count is the length of row 0.
using DoubleMatrix = std::vector<std::vector<double>>;

}  // namespace zavrel
