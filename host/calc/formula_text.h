#pragma once
// Formulas and cells as people read them.

#include <string>
#include <string_view>

#include "host/workbook/workbook.h"

namespace zavhost {

/// The text of a formula written for `origin` as it reads in `cell`: relative references moved,
/// those that leave the sheet "#REF!".
std::u16string MovedFormulaText(std::u16string_view text, const CellAddress& origin,
                                const CellAddress& cell);

/// "Sheet1!B7", with quotes around a name that needs them.
std::string CellText(const Workbook& workbook, const CellAddress& cell);

}  // namespace zavhost
