#pragma once

#include <cstddef>

#include "data/data_argument.h"

namespace zavrel {

/// The data set that a handle's index stands for: the cells of the values whose category cells
/// carry the names that the selection asks for, in their order, read afresh. The values and their
/// category variables go together row by row as far as all of them have rows; blank cells after the
/// used part of whole columns count. Unreadable when no selection has the index in this session,
/// when data of it cannot be read or are cut down to their used parts in ways that do not go
/// together, and when selections of selections are nested deeper than 16.
DataArgument ReadStackedData(std::size_t index);

}  // namespace zavrel
