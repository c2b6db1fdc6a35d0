#include "host/automation/book.h"

#include <algorithm>

#include "host/automation/formula_edit.h"
#include "host/calc/formula_text.h"

namespace zavhost {
namespace {

bool Meet(const CellRange& a, const CellRange& b) {
  return a.first_row <= b.last_row && b.first_row <= a.last_row &&
         a.first_column <= b.last_column && b.first_column <= a.last_column;
}

bool Holds(const CellRange& outer, const CellRange& inner) {
  return outer.Contains(inner.first_row, inner.first_column) &&
         outer.Contains(inner.last_row, inner.last_column);
}

CellRange FilledBy(const CellPosition& cell, const CellFormula& formula) {
  return formula.array.value_or(CellRange{cell.row, cell.column, cell.row, cell.column});
}

}  // namespace

Book::Book(Workbook workbook, std::filesystem::path given_file,
           const std::vector<std::filesystem::path>& add_ins)
    : name(workbook.file_name), file(std::move(given_file)), caption(workbook.file_name) {
  TakeOver(workbook);
  engine_ = std::make_unique<Engine>(std::move(workbook));
  for (const std::filesystem::path& add_in : add_ins) engine_->LoadAddIn(add_in);
  constexpr std::uint16_t kWorkbookFunctions = 5;
  if (!add_ins.empty()) engine_->Announce(kWorkbookFunctions);
}

void Book::TakeOver(const Workbook& workbook) {
  for (const Sheet& cells : workbook.sheets) {
    const auto sheet = std::make_shared<SheetState>();
    sheet->name = cells.name();
    sheet->protection.of_contents = cells.is_protected();
    sheets_.push_back(sheet);
  }
  sheets_made_ = static_cast<int>(sheets_.size());
  for (const FormulaCell& formula : workbook.formulas) {
    const CellAddress& cell = formula.address;
    sheets_[cell.sheet]->formulas[{cell.row, cell.column}] = {
        ShownFormulaText(workbook.formula_texts[formula.text], formula.origin, cell), formula.array,
        formula.is_dynamic, false};
  }
  for (const DefinedName& defined : workbook.names) {
    const auto made = std::make_shared<NameState>();
    made->name = defined.name;
    made->text = defined.text;
    if (defined.sheet && *defined.sheet < sheets_.size()) made->sheet = sheets_[*defined.sheet];
    names_.push_back(made);
  }
  for (const Table& table : workbook.tables)
    sheets_[table.sheet]->tables.push_back(std::make_shared<Table>(table));
  if (!sheets_.empty()) active = sheets_.front();
}

std::optional<std::size_t> Book::IndexOf(const SheetState& sheet) const {
  for (std::size_t i = 0; i < sheets_.size(); ++i) {
    if (sheets_[i].get() == &sheet) return i;
  }
  return std::nullopt;
}

SheetPtr Book::FindSheet(std::u16string_view wanted) const {
  const auto found = std::find_if(sheets_.begin(), sheets_.end(), [&](const SheetPtr& sheet) {
    return EqualIgnoringCase(sheet->name, wanted);
  });
  return found == sheets_.end() ? nullptr : *found;
}

Sheet& Book::CellsOf(const SheetState& sheet) {
  return engine_->workbook().sheets[IndexOf(sheet).value()];
}

// Sheets.

std::u16string Book::FreeName() const {
  for (int number = sheets_made_ + 1;; ++number) {
    std::u16string free = u"Sheet" + Utf16FromUtf8(std::to_string(number));
    if (!FindSheet(free)) return free;
  }
}

SheetPtr Book::Insert(SheetPtr sheet, std::size_t index) {
  const auto place = static_cast<std::ptrdiff_t>(index);
  std::vector<Sheet>& cells = engine_->workbook().sheets;
  cells.insert(cells.begin() + place, Sheet(sheet->name));
  sheets_.insert(sheets_.begin() + place, sheet);
  ++sheets_made_;
  active = sheet;
  Touch();
  return sheet;
}

SheetPtr Book::AddSheet(std::size_t index) {
  const auto sheet = std::make_shared<SheetState>();
  sheet->name = FreeName();
  return Insert(sheet, index);
}

SheetPtr Book::CopySheet(const SheetState& source, std::size_t index) {
  const auto sheet = std::make_shared<SheetState>(source);
  sheet->charts.clear();
  sheet->tables.clear();
  sheet->pivot_tables.clear();
  for (int number = 2;; ++number) {
    sheet->name = source.name + u" (" + Utf16FromUtf8(std::to_string(number)) + u")";
    if (!FindSheet(sheet->name)) break;
  }
  for (auto& [cell, formula] : sheet->formulas)
    formula.text = WithSheetRenamed(formula.text, source.name, sheet->name);
  const Sheet cells = CellsOf(source);
  Insert(sheet, index);
  Sheet& target = CellsOf(*sheet);
  if (const auto& used = cells.used_range()) {
    for (std::int32_t column = used->first_column; column <= used->last_column; ++column) {
      for (const Sheet::Entry& entry : cells.column(column))
        target.Set(entry.row, column, entry.value);
    }
  }
  return sheet;
}

void Book::RemoveSheet(SheetState& sheet) {
  const std::size_t index = IndexOf(sheet).value();
  const std::u16string gone = sheet.name;
  const SheetPtr held = sheets_[index];
  held->is_deleted = true;
  for (const auto& chart : held->charts) chart->is_deleted = true;
  const auto place = static_cast<std::ptrdiff_t>(index);
  std::vector<Sheet>& cells = engine_->workbook().sheets;
  cells.erase(cells.begin() + place);
  sheets_.erase(sheets_.begin() + place);
  std::erase_if(names_, [&](const auto& defined) {
    if (defined->sheet != held) return false;
    defined->is_deleted = true;
    return true;
  });
  if (active == held) active = sheets_[std::min(index, sheets_.size() - 1)];
  RewriteTexts([&](std::u16string_view text) { return WithSheetRemoved(text, gone); });
  Touch();
}

void Book::RenameSheet(SheetState& sheet, std::u16string_view new_name) {
  const std::u16string old = sheet.name;
  CellsOf(sheet).set_name(std::u16string(new_name));
  sheet.name = new_name;
  RewriteTexts([&](std::u16string_view text) { return WithSheetRenamed(text, old, new_name); });
  Touch();
}

void Book::RewriteTexts(const std::function<std::u16string(std::u16string_view)>& rewrite) {
  const auto in_place = [&](std::u16string& text) {
    if (!text.empty()) text = rewrite(text);
  };
  for (const SheetPtr& sheet : sheets_) {
    for (auto& [cell, formula] : sheet->formulas) in_place(formula.text);
    for (const auto& chart : sheet->charts) {
      for (const auto& series : chart->series) {
        in_place(series->values.reference);
        in_place(series->x_values.reference);
        if (series->name.starts_with(u'=')) series->name = u"=" + rewrite(series->name.substr(1));
      }
    }
  }
  for (const auto& defined : names_) in_place(defined->text);
}

// Cells.

std::optional<Book::Found> Book::FormulaAt(SheetState& sheet, const CellPosition& cell) {
  if (const auto own = sheet.formulas.find(cell); own != sheet.formulas.end())
    return Found{cell, &own->second};
  for (auto& [position, formula] : sheet.formulas) {
    if (formula.array && formula.array->Contains(cell.row, cell.column))
      return Found{position, &formula};
  }
  return std::nullopt;
}

bool Book::SplitsArray(SheetState& sheet, const CellRange& range) {
  return std::any_of(sheet.formulas.begin(), sheet.formulas.end(), [&](const auto& held) {
    const CellFormula& formula = held.second;
    return formula.array && !formula.is_dynamic && Meet(*formula.array, range) &&
           !Holds(range, *formula.array);
  });
}

void Book::DropFormula(SheetState& sheet, std::map<CellPosition, CellFormula>::iterator place) {
  const CellRange filled = FilledBy(place->first, place->second);
  sheet.formulas.erase(place);
  Sheet& cells = CellsOf(sheet);
  for (std::int32_t row = filled.first_row; row <= filled.last_row; ++row) {
    for (std::int32_t column = filled.first_column; column <= filled.last_column; ++column)
      cells.Set(row, column, Value());
  }
}

/// The formulas in the range go. Dynamic ones that fill a cell of it from outside fill their own
/// cell only, until the next calculation.
void Book::DropFormulas(SheetState& sheet, const CellRange& range) {
  for (auto place = sheet.formulas.begin(); place != sheet.formulas.end();) {
    const auto held = place++;
    const CellPosition cell = held->first;
    if (range.Contains(cell.row, cell.column)) {
      DropFormula(sheet, held);
    } else if (held->second.array && Meet(*held->second.array, range)) {
      CellFormula formula = held->second;
      DropFormula(sheet, held);
      formula.array = CellRange{cell.row, cell.column, cell.row, cell.column};
      sheet.formulas[cell] = std::move(formula);
    }
  }
}

void Book::SetValue(SheetState& sheet, const CellPosition& cell, Value value) {
  DropFormulas(sheet, {cell.row, cell.column, cell.row, cell.column});
  Sheet& cells = CellsOf(sheet);
  if (!value.IsBlank() || !cells.At(cell.row, cell.column).IsBlank())
    cells.Set(cell.row, cell.column, std::move(value));
  Touch();
}

void Book::SetFormula(SheetState& sheet, const CellPosition& cell, CellFormula formula) {
  const CellRange range = FilledBy(cell, formula);
  DropFormulas(sheet, range);
  Sheet& cells = CellsOf(sheet);
  for (std::int32_t row = range.first_row; row <= range.last_row; ++row) {
    for (std::int32_t column = range.first_column; column <= range.last_column; ++column)
      cells.Set(row, column, 0.0);
  }
  sheet.formulas[cell] = std::move(formula);
  Touch();
}

void Book::ClearContents(SheetState& sheet, const CellRange& range) {
  DropFormulas(sheet, range);
  Sheet& cells = CellsOf(sheet);
  const CellRange used = cells.used_range().value_or(CellRange{});
  for (std::int32_t column = std::max(range.first_column, used.first_column);
       column <= std::min(range.last_column, used.last_column); ++column) {
    std::vector<std::int32_t> rows;
    for (const Sheet::Entry& entry : cells.column(column)) {
      if (entry.row >= range.first_row && entry.row <= range.last_row) rows.push_back(entry.row);
    }
    for (const std::int32_t row : rows) cells.Set(row, column, Value());
  }
  Touch();
}

}  // namespace zavhost
