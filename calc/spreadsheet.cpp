#include "calc/spreadsheet.h"

namespace zavcalc {
namespace {

/// com.sun.star.table.CellRangeAddress
struct RangeAddress {
  std::int16_t sheet;
  std::int32_t first_column;
  std::int32_t first_row;
  std::int32_t last_column;
  std::int32_t last_row;
};

SheetRange ToRange(const RangeAddress& address) {
  return {address.sheet, address.first_column, address.first_row, address.last_column,
          address.last_row};
}

UnoReference SheetCollection(const UnoReference& model) {
  return model.As(u"com.sun.star.sheet.XSpreadsheetDocument")
      .ObjectFrom(u"com.sun.star.sheet.XSpreadsheetDocument::getSheets", {});
}

}  // namespace

std::size_t CountSheets(const UnoReference& model) {
  sal_Int32 count = 0;
  SheetCollection(model)
      .As(u"com.sun.star.container.XIndexAccess")
      .Call(u"com.sun.star.container.XIndexAccess::getCount", &count, {});
  return static_cast<std::size_t>(count);
}

std::vector<NamedSheet> SheetsOf(const UnoReference& model) {
  const UnoReference sheets = SheetCollection(model);
  SequenceValue names(u"[]string");
  sheets.As(u"com.sun.star.container.XNameAccess")
      .Call(u"com.sun.star.container.XNameAccess::getElementNames", names.Receive(), {});
  const UnoReference by_index = sheets.As(u"com.sun.star.container.XIndexAccess");
  std::vector<NamedSheet> found;
  for (rtl_uString* name : ElementsOf<rtl_uString*>(names.get())) {
    auto index = static_cast<sal_Int32>(found.size());
    const AnyValue sheet(by_index, u"com.sun.star.container.XIndexAccess::getByIndex", {&index});
    found.push_back(
        {std::u16string(TextOf(name)), sheet.Object().As(u"com.sun.star.table.XCellRange")});
  }
  return found;
}

std::vector<SheetRange> AddressesOf(const UnoReference& ranges) {
  SequenceValue addresses(u"[]com.sun.star.table.CellRangeAddress");
  ranges.Call(u"com.sun.star.sheet.XSheetCellRanges::getRangeAddresses", addresses.Receive(), {});
  std::vector<SheetRange> found;
  for (const RangeAddress& address : ElementsOf<RangeAddress>(addresses.get()))
    found.push_back(ToRange(address));
  return found;
}

SheetRange AddressOf(const UnoReference& range) {
  RangeAddress address{};
  range.As(u"com.sun.star.sheet.XCellRangeAddressable")
      .Call(u"com.sun.star.sheet.XCellRangeAddressable::getRangeAddress", &address, {});
  return ToRange(address);
}

UnoReference PartOf(const UnoReference& sheet, const SheetRange& part) {
  SheetRange corners = part;
  return sheet.ObjectFrom(
      u"com.sun.star.table.XCellRange::getCellRangeByPosition",
      {&corners.first_column, &corners.first_row, &corners.last_column, &corners.last_row});
}

UnoReference ArrayAround(const UnoReference& sheet, const SheetRange& cell) {
  const UnoReference start = PartOf(sheet, cell).As(u"com.sun.star.sheet.XSheetCellRange");
  uno_Interface* object = start.get();
  UnoReference cursor =
      sheet.As(u"com.sun.star.sheet.XSpreadsheet")
          .ObjectFrom(u"com.sun.star.sheet.XSpreadsheet::createCursorByRange", {&object});
  cursor.Call(u"com.sun.star.sheet.XSheetCellCursor::collapseToCurrentArray", nullptr, {});
  return cursor;
}

std::vector<SheetRange> FormulaRanges(const UnoReference& sheet) {
  std::int16_t formulas = 16;  // com.sun.star.sheet.CellFlags
  return AddressesOf(
      sheet.As(u"com.sun.star.sheet.XCellRangesQuery")
          .ObjectFrom(u"com.sun.star.sheet.XCellRangesQuery::queryContentCells", {&formulas}));
}

std::vector<SheetRange> ErrorRanges(const UnoReference& sheet) {
  std::int32_t errors = 4;  // com.sun.star.sheet.FormulaResult
  return AddressesOf(
      sheet.As(u"com.sun.star.sheet.XCellRangesQuery")
          .ObjectFrom(u"com.sun.star.sheet.XCellRangesQuery::queryFormulaCells", {&errors}));
}

}  // namespace zavcalc
