#pragma once
// Putting values into the cells of a sheet part, with every other byte left as it is.

#include <string>
#include <string_view>
#include <vector>

#include "host/workbook/cell_names.h"
#include "host/workbook/workbook.h"

namespace zavhost {

/// The sheet part `xml` with the sheet's present values in `cells` (ascending by row, then column,
/// each once). Of a cell that is there its `t` attribute, its v and its is change; a cell that is
/// not there is made in its place. Throws XmlError.
std::string RewriteSheet(std::string_view xml, const Sheet& sheet,
                         const std::vector<CellPosition>& cells);

/// A number as XML holds it: the shortest text that reads back as the same number.
std::string NumberText(double number);

}  // namespace zavhost
