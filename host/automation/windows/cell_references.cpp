// Cells that texts and arguments name.
#include <algorithm>

#include "formula/a1_reference.h"
#include "host/automation/formula_edit.h"
#include "host/automation/windows/range.h"

namespace zavhost {
namespace {

/// The cells of a plain "A1:B2", "$A:$C" or "3:7".
std::optional<CellRange> PlainCells(std::u16string_view text) {
  const auto written = formula::ScanA1(text);
  if (!written || written->length != text.size()) return std::nullopt;
  CellRange range;
  std::tie(range.first_row, range.last_row) = std::minmax(written->first.row, written->last.row);
  std::tie(range.first_column, range.last_column) =
      std::minmax(written->first.column, written->last.column);
  if (written->whole_columns) {
    range.first_row = 0;
    range.last_row = kSheetRows - 1;
  }
  if (written->whole_rows) {
    range.first_column = 0;
    range.last_column = kSheetColumns - 1;
  }
  return range;
}

/// The cells of a formula such as a defined name, as seen from a sheet.
std::optional<NamedCells> CellsOfFormula(Book& book, const SheetPtr& sheet,
                                         std::u16string_view text) {
  book.Renew();
  const auto cells_of = [&](const std::u16string& formula) -> std::optional<NamedCells> {
    const std::optional<Reference> reference = book.engine().FindReference(formula);
    if (!reference || reference->areas.empty()) return std::nullopt;
    return NamedCells{book.sheets()[reference->sheet], reference->areas};
  };
  if (text.find(u'!') == std::u16string_view::npos) {
    if (auto own = cells_of(QuotedSheetName(sheet->name) + u"!" + std::u16string(text))) return own;
  }
  return cells_of(std::u16string(text));
}

/// The smallest rectangle with all the cells of both.
CellRange Around(const CellRange& a, const CellRange& b) {
  return {std::min(a.first_row, b.first_row), std::min(a.first_column, b.first_column),
          std::max(a.last_row, b.last_row), std::max(a.last_column, b.last_column)};
}

NamedCells CellsOfArgument(Book& book, const SheetPtr& sheet, const Variant& given) {
  if (const auto* range = In<RangeObject>(given)) {
    if (&range->book() != &book) Refuse();
    return {range->shared_sheet(), range->areas()};
  }
  if (given.type() != VT_BSTR) RefuseType();
  auto cells = CellsNamed(book, sheet, given.text());
  if (!cells) Refuse();
  return std::move(*cells);
}

}  // namespace

std::optional<NamedCells> CellsNamed(Book& book, const SheetPtr& sheet, std::u16string_view text) {
  if (text.starts_with(u'=')) text.remove_prefix(1);
  NamedCells cells{sheet, {}};
  std::u16string_view rest = text;
  while (true) {
    const std::size_t comma = rest.find(u',');
    const std::optional<CellRange> area = PlainCells(rest.substr(0, comma));
    if (!area) return CellsOfFormula(book, sheet, text);
    cells.areas.push_back(*area);
    if (comma == std::u16string_view::npos) return cells;
    rest.remove_prefix(comma + 1);
  }
}

ObjectPtr RangeFrom(const ExcelPtr& excel, const BookPtr& book, const SheetPtr& sheet,
                    const Arguments& given) {
  NamedCells cells = CellsOfArgument(*book, sheet, given[0]);
  if (given.Has(1)) {
    const NamedCells corner = CellsOfArgument(*book, sheet, given[1]);
    if (corner.sheet != cells.sheet) Refuse();
    CellRange around = cells.areas.front();
    for (const NamedCells* part : {&std::as_const(cells), &corner}) {
      for (const CellRange& area : part->areas) around = Around(around, area);
    }
    cells.areas = {around};
  }
  return Make<RangeObject>(excel, book, cells.sheet, std::move(cells.areas));
}

void CheckFormula(const Book& book, std::u16string_view text) {
  try {
    ParseFormula(text);
  } catch (const FormulaError&) {
    Refuse();
  }
  if (!NamesOnlySheets(text, [&](std::u16string_view name) {
        return name.find(u'[') != std::u16string_view::npos || book.FindSheet(name);
      }))
    Refuse();
}

CellRange UsedCells(Book& book, const SheetState& sheet) {
  std::optional<CellRange> used;
  const auto include = [&used](const CellRange& range) {
    used = used ? Around(*used, range) : range;
  };
  const Sheet& cells = book.CellsOf(sheet);
  if (const auto& stored = cells.used_range()) {
    for (std::int32_t column = stored->first_column; column <= stored->last_column; ++column) {
      for (const Sheet::Entry& entry : cells.column(column)) {
        if (!entry.value.IsBlank()) include({entry.row, column, entry.row, column});
      }
    }
  }
  for (const auto& [cell, formula] : sheet.formulas)
    include(formula.array.value_or(CellRange{cell.row, cell.column, cell.row, cell.column}));
  for (const auto& [cell, style] : sheet.styles.cells())
    include({cell.row, cell.column, cell.row, cell.column});
  return used.value_or(CellRange{});
}

}  // namespace zavhost
