#include "calc/sheet_cells.h"

#include <algorithm>

#include "calc/spreadsheet.h"

namespace zavcalc {

/// The key of a range's number format; nothing if its cells have several.
std::optional<std::int32_t> FormatOf(const UnoReference& range) {
  constexpr std::int32_t kAmbiguous = 2;  // com.sun.star.beans.PropertyState
  UnoText property(u"NumberFormat");
  std::int32_t state = kAmbiguous;
  range.As(u"com.sun.star.beans.XPropertyState")
      .Call(u"com.sun.star.beans.XPropertyState::getPropertyState", &state, {property.address()});
  if (state == kAmbiguous) return std::nullopt;
  const AnyValue format(range.As(u"com.sun.star.beans.XPropertySet"),
                        u"com.sun.star.beans.XPropertySet::getPropertyValue", {property.address()});
  if (format.get().pType->eTypeClass != typelib_TypeClass_LONG) return std::nullopt;
  return *static_cast<const std::int32_t*>(format.get().pData);
}

/// Whether this is the format of truth values; each language's formats start at a multiple.
bool IsLogical(std::int32_t format) {
  constexpr std::int32_t kLogicalFormat = 99;
  constexpr std::int32_t kFormatsOfLanguage = 10'000;
  return format % kFormatsOfLanguage == kLogicalFormat;
}

UnoReference SheetCells::Part(const SheetRange& range) const { return PartOf(sheet_, range); }

void SheetCells::SortFormulas() {
  formulas_.Sort();
  unplain_.Sort();
}

void SheetCells::ReadKinds() {
  const UnoReference cursor = sheet_.As(u"com.sun.star.sheet.XSpreadsheet")
                                  .ObjectFrom(u"com.sun.star.sheet.XSpreadsheet::createCursor", {});
  sal_Bool is_expanded = 0;
  cursor.As(u"com.sun.star.sheet.XUsedAreaCursor")
      .Call(u"com.sun.star.sheet.XUsedAreaCursor::gotoEndOfUsedArea", nullptr, {&is_expanded});
  const SheetRange end = AddressOf(cursor);
  used_ = {index_, 0, 0, end.last_column, end.last_row};
  const UnoReference used = Part(used_);
  const UnoReference blank =
      used.As(u"com.sun.star.sheet.XCellRangesQuery")
          .ObjectFrom(u"com.sun.star.sheet.XCellRangesQuery::queryEmptyCells", {});
  for (const SheetRange& part : AddressesOf(blank)) blank_.Add(part);
  blank_.Sort();
  const UnoReference formats =
      used.As(u"com.sun.star.sheet.XUniqueCellFormatRangesSupplier")
          .ObjectFrom(
              u"com.sun.star.sheet.XUniqueCellFormatRangesSupplier::getUniqueCellFormatRanges", {})
          .As(u"com.sun.star.container.XIndexAccess");
  sal_Int32 count = 0;
  formats.Call(u"com.sun.star.container.XIndexAccess::getCount", &count, {});
  for (sal_Int32 i = 0; i < count; ++i) {
    const AnyValue entry(formats, u"com.sun.star.container.XIndexAccess::getByIndex", {&i});
    const UnoReference ranges = entry.Object().As(u"com.sun.star.sheet.XSheetCellRanges");
    const auto format = FormatOf(ranges);
    if (!format || !IsLogical(*format)) continue;
    for (const SheetRange& part : AddressesOf(ranges)) logical_.Add(part);
  }
  logical_.Sort();
  has_kinds_ = true;
}

Kinds SheetCells::KindsOf(const SheetRange& range) {
  if (!has_kinds_) ReadKinds();
  Kinds kinds{blank_.Within(range), logical_.Within(range), unplain_.Within(range),
              formulas_.Touches(range)};
  if (range.last_row > used_.last_row) {
    kinds.blank.push_back(range);
    kinds.blank.back().first_row = std::max(range.first_row, used_.last_row + 1);
  }
  if (range.last_column > used_.last_column) {
    kinds.blank.push_back(range);
    kinds.blank.back().first_column = std::max(range.first_column, used_.last_column + 1);
  }
  return kinds;
}

}  // namespace zavcalc
