#pragma once

#include <cstddef>

#include "data/cell_columns.h"

namespace zavrel {

/// A lower bound of how many of the host's cells, from the first on, are numbers with the bits of
/// the payloads where the tags say number, and blank where they say blank: it ends at a cell of
/// another kind, at one that differs, or a few cells before these or the end.
std::size_t CountEqualNumbersAndBlanks(const XLOPER12* cells, const CellTag* tags,
                                       const double* payloads, std::size_t count);

}  // namespace zavrel
