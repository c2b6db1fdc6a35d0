#pragma once

#include <optional>

#include "data/excel_data.h"
#include "frame/cell_result.h"

namespace zavrel {

/// What a macro has arranged for the next ZavGetCellValues: writes the cells of the class into its
/// arrays and gives the call's result, their number, or #VALUE! when an array could not be written.
/// The arrangement is used up then, whatever became of it. Nothing when there is none.
std::optional<CellResult> FillNextCellValues(const ExcelData& data, CellClass cell_class);

}  // namespace zavrel
