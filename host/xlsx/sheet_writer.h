#pragma once
// Puts values into the cells of a sheet part and leaves every other byte unchanged.

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "host/workbook/cell_names.h"
#include "host/workbook/workbook.h"

namespace zavhost {

/// What changes in a sheet part.
struct SheetChanges {
  /// Cells that get their current values; ascending by row, then column, each once.
  std::vector<CellPosition> cells{};
  /// The ranges of the dynamic array formulas, by their cells.
  std::map<CellPosition, CellRange> spills{};
  /// Every formula goes, and its cell gets its current value.
  bool values_only = false;
};

/// The sheet part `xml` with the current values of the sheet. In an existing cell, the `t`
/// attribute, the elements v and is, and the range of a dynamic array formula change; a missing
/// cell is created in its place. Throws XmlError.
std::string RewriteSheet(std::string_view xml, const Sheet& sheet, const SheetChanges& changes);

/// A number as XML text: the shortest text that reads back as the same number.
std::string NumberText(double number);

}  // namespace zavhost
