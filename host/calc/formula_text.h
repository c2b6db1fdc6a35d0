#pragma once
// Formulas and cells as text for users.

#include <string>
#include <string_view>

#include "host/workbook/workbook.h"

namespace zavhost {

/// The text of a formula written for `origin` as Excel shows it in `cell`: relative references are
/// moved, those that leave the sheet become "#REF!", and functions and names lose the marks that
/// they have in files. A text that is longer than any formula is cut.
std::u16string ShownFormulaText(std::u16string_view text, const CellAddress& origin,
                                const CellAddress& cell);

/// "Sheet1!B7", with quotes around names that need them.
std::string CellText(const Workbook& workbook, const CellAddress& cell);

}  // namespace zavhost
