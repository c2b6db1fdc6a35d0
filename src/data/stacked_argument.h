#pragma once

#include <cstddef>

#include "data/data_argument.h"

namespace zavrel {

/// The data set that a handle's index stands for: the value cells whose category cells have the
/// names of the selection, in their order, read afresh. The values and their category variables
/// must have the same shape; blank cells after the used part of whole columns count. Unreadable if
/// no selection of this session has the index, if its data cannot be read or differ in shape, and
/// if selections are nested deeper than 16.
DataArgument ReadStackedData(std::size_t index);

}  // namespace zavrel
