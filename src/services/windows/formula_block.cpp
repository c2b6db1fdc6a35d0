#include "services/windows/formula_block.h"

#include <utility>

#include "contracts/message_ids.h"
#include "diagnostics/vek_exception.h"
#include "msexcel/windows/workbook.h"
#include "services/formula_pieces.h"
#include "services/windows/calm_excel.h"
#include "services/windows/try_to.h"

namespace zavrel::services {
namespace {

constexpr const char* kPlace = "WriteFormulas";

/// What is written must be read as the text that it is.
std::u16string AsText(const std::u16string& text) { return u"'" + text; }

bool IsFormula(const std::u16string& text) { return text.starts_with(u'='); }

MsExcel::Block AsEntered(MsExcel::Block cells) {
  for (MsExcel::CellValue& value : cells.values) {
    if (auto* text = std::get_if<std::u16string>(&value); text && !IsFormula(*text))
      *text = AsText(*text);
  }
  return cells;
}

void EnterArray(const MsExcel::Range& cells, const std::u16string& formula) {
  const auto refuse = [&] {
    throw VekExcelCellFormulaWriteError(kPlace, messages::kMessageExcelCellFormulaWriteError,
                                        {cells.Address()});
  };
  const auto pieces = InPieces(formula);
  if (!pieces) refuse();
  try {
    cells.SetArrayFormula(pieces->first);
    for (const auto& [name, text] : pieces->pieces) cells.ReplaceInFormulas(name, text);
  } catch (const VekExcelCallFailed&) {
    refuse();
  }
  // A replacement that leads to no formula changes nothing, and nobody is told.
  const std::u16string entered = cells.ArrayFormula();
  for (const auto& piece : pieces->pieces) {
    if (entered.find(piece.name) != std::u16string::npos) refuse();
  }
}

/// What cells hold, and how it comes back.
class Contents {
 public:
  explicit Contents(const MsExcel::Range& cells) : cells_(cells), formulas_(cells.Formulas()) {
    const MsExcel::Block values = cells.Values();
    for (std::size_t i = 0; i < formulas_.values.size(); ++i) {
      auto* text = std::get_if<std::u16string>(&formulas_.values[i]);
      // A text's formula is the text: it would come back as a number, a date or a formula.
      if (text != nullptr && values.values[i] == MsExcel::CellValue(*text)) *text = AsText(*text);
    }
    if (cells.HasArray()) FindArrays();
  }

  void PutBack() const {
    cells_.ClearContents();
    cells_.SetFormulas(formulas_);
    for (const auto& [cells, formula] : arrays_) EnterArray(cells, formula);
  }

 private:
  struct Array {
    MsExcel::Range cells;
    std::u16string formula;
  };

  void FindArrays() {
    for (std::size_t row = 0; row < formulas_.rows; ++row) {
      for (std::size_t column = 0; column < formulas_.columns; ++column) {
        const auto cell = cells_.Cell(static_cast<long>(row + 1), static_cast<long>(column + 1));
        // The cells of an array that was found are blank already.
        const bool is_blank = std::holds_alternative<std::monostate>(formulas_.At(row, column));
        if (!is_blank && cell.HasArray()) Take(cell.CurrentArray(), row, column);
      }
    }
  }

  void Take(const MsExcel::Range& array, std::size_t row, std::size_t column) {
    const auto rows = static_cast<std::size_t>(array.RowCount());
    const auto columns = static_cast<std::size_t>(array.ColumnCount());
    const bool begins_here = array.Row() == cells_.Row() + static_cast<long>(row) &&
                             array.Column() == cells_.Column() + static_cast<long>(column);
    if (!begins_here || row + rows > formulas_.rows || column + columns > formulas_.columns) {
      throw VekCellPartOfArrayFormula(kPlace, messages::kMessageCellPartOfArrayFormula,
                                      {array.Address()});
    }
    arrays_.push_back({array, array.ArrayFormula()});
    for (std::size_t i = 0; i < rows; ++i) {
      for (std::size_t k = 0; k < columns; ++k) formulas_.At(row + i, column + k) = {};
    }
  }

  MsExcel::Range cells_;
  MsExcel::Block formulas_;
  std::vector<Array> arrays_;
};

}  // namespace

void WriteFormulas(const MsExcel::Range& first_cell, const FormulaBlock& block) {
  const auto& cells = block.cells;
  const MsExcel::Range range =
      first_cell.Resized(static_cast<long>(cells.rows), static_cast<long>(cells.columns));
  const CalmExcel calm(range.ParentSheet().ParentBook().ExcelApplication());
  const Contents before(range);
  try {
    // An array formula can only be replaced as a whole.
    range.ClearContents();
    range.SetFormulas(AsEntered(cells));
    for (const FormulaBlock::ArrayFormula& array : block.arrays) {
      const auto place =
          range.Cell(static_cast<long>(array.row + 1), static_cast<long>(array.column + 1));
      EnterArray(place.Resized(static_cast<long>(array.rows), static_cast<long>(array.columns)),
                 array.formula);
    }
  } catch (...) {
    TryTo([&] { before.PutBack(); });
    throw;
  }
}

}  // namespace zavrel::services
