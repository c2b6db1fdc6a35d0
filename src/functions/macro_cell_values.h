#pragma once

#include <optional>

#include "data/excel_data.h"
#include "frame/cell_result.h"

namespace zavrel {

/// Writes the cells of the class into the arrays that a macro has arranged for the next
/// ZavGetCellValues. Returns the call's result: the number of cells, or #VALUE! if an array could
/// not be written. The arrangement is used up in either case, but kept while a cell is not
/// calculated yet. std::nullopt if there is none.
std::optional<CellResult> FillNextCellValues(const ExcelData& data, CellClass cell_class);

/// Drops what a macro has arranged: the call that it was meant for has failed.
void ForgetNextCellValues();

}  // namespace zavrel
