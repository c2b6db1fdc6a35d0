#pragma once
// Puts values into the cells of a sheet part and leaves every other byte unchanged.

#include <string>
#include <string_view>
#include <vector>

#include "host/workbook/cell_names.h"
#include "host/workbook/workbook.h"

namespace zavhost {

/// The sheet part `xml` with the current values of the sheet in `cells` (ascending by row, then
/// column, each once). In an existing cell, the `t` attribute and the elements v and is change; a
/// missing cell is created in its place. Throws XmlError.
std::string RewriteSheet(std::string_view xml, const Sheet& sheet,
                         const std::vector<CellPosition>& cells);

/// A number as XML text: the shortest text that reads back as the same number.
std::string NumberText(double number);

}  // namespace zavhost
