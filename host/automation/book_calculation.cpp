// The engine's side of a workbook that is being edited.
#include "host/automation/book.h"

namespace zavhost {
namespace {

void AddFormulas(Workbook& workbook, std::uint32_t sheet, SheetState& state) {
  for (const auto& [cell, formula] : state.formulas) {
    const CellAddress address{sheet, cell.row, cell.column};
    const auto text = static_cast<std::uint32_t>(workbook.formula_texts.size());
    workbook.formula_texts.push_back(formula.text);
    workbook.formulas.push_back({address, text, address, formula.array, formula.is_dynamic});
    // What the host cannot compute keeps the value of its cell.
    if (formula.is_new) workbook.sheets[sheet].Set(cell.row, cell.column, ErrorCode::kName);
  }
}

}  // namespace

void Book::Renew() {
  Workbook& workbook = engine_->workbook();
  workbook.formulas.clear();
  workbook.formula_texts.clear();
  workbook.tables.clear();
  workbook.names.clear();
  // The index of names is renewed when their number changes.
  workbook.FindName(u"", 0);
  for (std::size_t i = 0; i < sheets_.size(); ++i) {
    const auto number = static_cast<std::uint32_t>(i);
    AddFormulas(workbook, number, *sheets_[i]);
    for (const auto& table : sheets_[i]->tables) {
      table->sheet = number;
      workbook.tables.push_back(*table);
    }
  }
  for (const auto& defined : names_) {
    std::optional<std::uint32_t> sheet;
    if (defined->sheet) sheet = static_cast<std::uint32_t>(IndexOf(*defined->sheet).value());
    workbook.names.push_back({defined->name, defined->text, sheet});
  }
}

void Book::Calculate() {
  Renew();
  engine_->Recalculate();
  is_dirty_ = false;
  // Dynamic arrays may fill other cells than before.
  std::size_t number = 0;
  for (const SheetPtr& sheet : sheets_) {
    for (auto& [cell, formula] : sheet->formulas) {
      formula.array = engine_->workbook().formulas[number++].array;
      formula.is_new = false;
    }
  }
}

}  // namespace zavhost
