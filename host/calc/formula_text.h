#pragma once
// Formulas and cells as text for users.

#include <string>
#include <string_view>

#include "host/workbook/workbook.h"

namespace zavhost {

/// The text that a formula written for `origin` has in `cell`: relative references are moved, and
/// those that leave the sheet become "#REF!".
std::u16string MovedFormulaText(std::u16string_view text, const CellAddress& origin,
                                const CellAddress& cell);

/// "Sheet1!B7", with quotes around names that need them.
std::string CellText(const Workbook& workbook, const CellAddress& cell);

}  // namespace zavhost
