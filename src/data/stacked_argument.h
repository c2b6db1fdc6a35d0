#pragma once

#include <cstddef>

#include "data/data_argument.h"

namespace zavrel {

/// The data set that a handle's index stands for: the value cells whose category cells have the
/// names of the selection, in their order, read afresh. The values and their category variables are
/// paired row by row as far as all of them have rows; blank cells after the used part of whole
/// columns count. Unreadable if no selection of this session has the index, if its data cannot be
/// read or were cut down to their used parts in ways that may not match, and if selections are
/// nested deeper than 16.
DataArgument ReadStackedData(std::size_t index);

}  // namespace zavrel
