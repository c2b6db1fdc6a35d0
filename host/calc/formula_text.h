#pragma once
// Formulas and cells as people read them.

#include <string>
#include <string_view>

#include "host/workbook/workbook.h"

namespace zavhost {

/// The text of a formula written for `origin` as Excel shows it in `cell`: relative references
/// moved, those that leave the sheet "#REF!", and functions of add-ins without the "_xll." that
/// they have in files.
std::u16string ShownFormulaText(std::u16string_view text, const CellAddress& origin,
                                const CellAddress& cell);

/// "Sheet1!B7", with quotes around a name that needs them.
std::string CellText(const Workbook& workbook, const CellAddress& cell);

}  // namespace zavhost
