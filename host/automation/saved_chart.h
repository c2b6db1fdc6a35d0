#pragma once
// Charts as libxlsxwriter writes them.

#include <xlsxwriter.h>

#include "host/automation/chart.h"
#include "host/workbook/cell_names.h"

namespace zavhost {

/// A colour of Excel's, which has red in its lowest byte, as the library has it.
lxw_color_t ColourOf(std::int32_t colour);

/// Puts the chart on the sheet; it begins at a point in a cell. Throws WorkbookError.
void SaveChart(lxw_workbook* book, lxw_worksheet* sheet, const Chart& chart,
               const CellPosition& cell, double left, double top);

}  // namespace zavhost
