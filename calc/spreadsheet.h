#pragma once
// What the component reads of LibreOffice's documents.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "calc/sheet_range.h"
#include "calc/uno_reference.h"

namespace zavcalc {

struct NamedSheet {
  std::u16string name;
  UnoReference range;  // as XCellRange
};
/// In their order.
std::vector<NamedSheet> SheetsOf(const UnoReference& model);

std::size_t CountSheets(const UnoReference& model);

/// The addresses of an XSheetCellRanges.
std::vector<SheetRange> AddressesOf(const UnoReference& ranges);
SheetRange AddressOf(const UnoReference& range);

/// A part of a sheet, as XCellRange.
UnoReference PartOf(const UnoReference& sheet, const SheetRange& part);

/// The range of the array formula that a cell belongs to, as XSheetCellCursor.
UnoReference ArrayAround(const UnoReference& sheet, const SheetRange& cell);

/// The ranges of a sheet in which all cells have formulas.
std::vector<SheetRange> FormulaRanges(const UnoReference& sheet);
/// The ranges in which all cells have formulas that give errors; calculates what has not been.
std::vector<SheetRange> ErrorRanges(const UnoReference& sheet);
/// Calls `visit` with the column, the row and the text of each formula of a range of the sheet.
template <class Visit>
void VisitFormulas(const UnoReference& sheet, const SheetRange& range, const Visit& visit) {
  SequenceValue texts(u"[][]string");
  PartOf(sheet, range)
      .As(u"com.sun.star.sheet.XCellRangeFormula")
      .Call(u"com.sun.star.sheet.XCellRangeFormula::getFormulaArray", texts.Receive(), {});
  std::int32_t row = range.first_row;
  for (uno_Sequence* line : ElementsOf<uno_Sequence*>(texts.get())) {
    std::int32_t column = range.first_column;
    for (rtl_uString* text : ElementsOf<rtl_uString*>(line)) visit(column++, row, TextOf(text));
    ++row;
  }
}

}  // namespace zavcalc
