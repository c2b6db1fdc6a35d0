#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "msexcel/windows/range.h"

namespace zavrel::services {

/// What a rectangle of cells is to hold.
struct FormulaBlock {
  struct ArrayFormula {
    std::size_t row, column;  // of its first cell in the block, from 0
    std::size_t rows, columns;
    std::u16string formula;  // of any length that Excel has, with its "="
  };

  /// Texts that begin with "=" are formulas, in English and A1; any other text stays a text.
  MsExcel::Block cells;
  std::vector<ArrayFormula> arrays;  // their cells in `cells` are blank
};

/// Writes the block into the range, which begins at its first cell. On failure the cells hold again
/// what they held. Throws VekCellPartOfArrayFormula if an array formula lies partly outside,
/// VekExcelCellFormulaWriteError with the address of an array formula that cannot be entered, and
/// VekExcelCallFailed for any other formula that Excel refuses.
void WriteFormulas(const MsExcel::Range& first_cell, const FormulaBlock& block);

}  // namespace zavrel::services
