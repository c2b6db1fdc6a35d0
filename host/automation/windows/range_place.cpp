// Where the cells of a range are, and the ranges beside it.
#include <algorithm>
#include <cmath>

#include "host/automation/windows/range.h"
#include "host/automation/windows/worksheet.h"

namespace zavhost {
namespace {

using Self = RangeObject;

std::int64_t CellsIn(const CellRange& area, RangeUnit unit) {
  if (unit == RangeUnit::kRows) return area.rows();
  if (unit == RangeUnit::kColumns) return area.columns();
  return std::int64_t{area.rows()} * area.columns();
}

std::int64_t CountOf(const Self& self) {
  std::int64_t count = 0;
  for (const CellRange& area : self.areas()) count += CellsIn(area, self.unit());
  return count;
}

// Addresses.

std::u16string Number(std::int32_t number) { return Utf16FromUtf8(std::to_string(number)); }

std::u16string CornerText(std::int32_t row, std::int32_t column, bool row_absolute,
                          bool column_absolute, const CellRange& of) {
  std::u16string text;
  if (!of.HasAllColumns() || of.HasAllRows())
    text += (column_absolute ? u"$" : u"") + ColumnLetters(column);
  if (!of.HasAllRows()) text += (row_absolute ? u"$" : u"") + Number(row + 1);
  return text;
}

std::u16string R1C1Text(const CellRange& area) {
  const auto corner = [&](std::int32_t row, std::int32_t column) {
    std::u16string text;
    if (!area.HasAllRows()) text += u"R" + Number(row + 1);
    if (!area.HasAllColumns() || area.HasAllRows()) text += u"C" + Number(column + 1);
    return text;
  };
  const std::u16string first = corner(area.first_row, area.first_column);
  const std::u16string last = corner(area.last_row, area.last_column);
  return first == last ? first : first + u":" + last;
}

std::u16string AreaText(const CellRange& area, bool row_absolute, bool column_absolute) {
  const std::u16string first =
      CornerText(area.first_row, area.first_column, row_absolute, column_absolute, area);
  const std::u16string last =
      CornerText(area.last_row, area.last_column, row_absolute, column_absolute, area);
  return area.IsSingleCell() ? first : first + u":" + last;
}

Variant Address(Self& self, const Arguments& given) {
  const std::int32_t style = given.Integer(2, kA1Style);
  if (style != kA1Style && style != kR1C1Style) Refuse();
  std::u16string text;
  if (given.Boolean(3)) {
    // The quotes stand around the workbook's name too.
    const std::u16string whole = u"[" + self.book().name + u"]" + self.sheet().name;
    const bool is_plain =
        QuotedSheetName(self.sheet().name) == self.sheet().name &&
        QuotedSheetName(self.book().name.substr(0, self.book().name.rfind(u'.'))).front() != u'\'';
    text = is_plain ? whole + u"!" : QuotedSheetName(whole) + u"!";
  }
  bool is_first = true;
  for (const CellRange& area : self.areas()) {
    if (!std::exchange(is_first, false)) text += u",";
    text += style == kR1C1Style ? R1C1Text(area)
                                : AreaText(area, given.Boolean(0, true), given.Boolean(1, true));
  }
  return std::u16string_view(text);
}

// Other ranges.

/// A row or column that an argument moves; one outside of all sheets for one that is far away.
std::int32_t Moved(std::int32_t place, std::int32_t by) {
  return static_cast<std::int32_t>(
      std::clamp<std::int64_t>(std::int64_t{place} + by, -1, std::int64_t{1} << 30));
}

}  // namespace

Variant RangeItem(RangeObject& self, const Arguments& given) {
  const CellRange& area = self.first();
  if (given[0].type() == VT_BSTR) RefuseType();
  const auto whole_number = [&](std::size_t index) {
    Variant number(given[index]);
    // Columns have letters too.
    if (number.type() == VT_BSTR) {
      const auto cell = ParseCellName(Utf8FromUtf16(std::u16string(number.text()) + u"1"));
      if (!cell) RefuseType();
      return cell->column + 1;
    }
    if (FAILED(VariantChangeType(number.address(), number.address(), 0, VT_I4))) RefuseType();
    return static_cast<std::int32_t>(number.get().lVal);
  };
  std::int32_t row = Moved(whole_number(0), -1), column = 0;
  if (given.Has(1)) {
    column = Moved(whole_number(1), -1);
  } else if (self.unit() == RangeUnit::kRows) {
    row = Moved(area.first_row, row);
    return self.Of({row, area.first_column, row, area.last_column}, RangeUnit::kRows);
  } else if (self.unit() == RangeUnit::kColumns) {
    column = Moved(area.first_column, row);
    return self.Of({area.first_row, column, area.last_row, column}, RangeUnit::kColumns);
  } else {
    // One number counts along the rows.
    if (row < 0) Refuse();
    column = row % area.columns();
    row /= area.columns();
  }
  const std::int32_t at_row = Moved(area.first_row, row);
  const std::int32_t at_column = Moved(area.first_column, column);
  return self.Of({at_row, at_column, at_row, at_column});
}

namespace {

Variant Offset(Self& self, const Arguments& given) {
  std::vector<CellRange> moved = self.areas();
  for (CellRange& area : moved) {
    area.first_row = Moved(area.first_row, given.Integer(0));
    area.last_row = Moved(area.last_row, given.Integer(0));
    area.first_column = Moved(area.first_column, given.Integer(1));
    area.last_column = Moved(area.last_column, given.Integer(1));
  }
  return self.Of(std::move(moved), self.unit());
}

Variant Resize(Self& self, const Arguments& given) {
  CellRange area = self.first();
  const std::int32_t rows = given.Integer(0, area.rows());
  const std::int32_t columns = given.Integer(1, area.columns());
  if (rows < 1 || columns < 1 || rows > kSheetRows || columns > kSheetColumns) Refuse();
  area.last_row = area.first_row + rows - 1;
  area.last_column = area.first_column + columns - 1;
  return self.Of(area);
}

/// The cells around the first one up to empty rows and columns.
Variant CurrentRegion(Self& self, const Arguments&) {
  const Sheet& cells = self.excel().Calculated(self.book()).CellsOf(self.sheet());
  const CellPosition start = self.corner();
  CellRange region{start.row, start.column, start.row, start.column};
  const auto holds_any = [&](const CellRange& range) {
    for (std::int32_t row = range.first_row; row <= range.last_row; ++row) {
      for (std::int32_t column = range.first_column; column <= range.last_column; ++column) {
        if (!cells.At(row, column).IsBlank()) return true;
      }
    }
    return false;
  };
  for (bool grew = true; grew;) {
    grew = false;
    const CellRange wide{std::max(region.first_row - 1, 0), std::max(region.first_column - 1, 0),
                         std::min(region.last_row + 1, kSheetRows - 1),
                         std::min(region.last_column + 1, kSheetColumns - 1)};
    const auto extend = [&](std::int32_t CellRange::*edge, CellRange line) {
      if (region.*edge == wide.*edge || !holds_any(line)) return;
      region.*edge = wide.*edge;
      grew = true;
    };
    extend(&CellRange::first_row,
           {wide.first_row, wide.first_column, wide.first_row, wide.last_column});
    extend(&CellRange::last_row,
           {wide.last_row, wide.first_column, wide.last_row, wide.last_column});
    extend(&CellRange::first_column,
           {wide.first_row, wide.first_column, wide.last_row, wide.first_column});
    extend(&CellRange::last_column,
           {wide.first_row, wide.last_column, wide.last_row, wide.last_column});
  }
  return self.Of(region);
}

template <bool kColumns>
Variant Entire(Self& self, const Arguments&) {
  std::vector<CellRange> areas = self.areas();
  for (CellRange& area : areas) {
    if (kColumns) {
      area.first_row = 0;
      area.last_row = kSheetRows - 1;
    } else {
      area.first_column = 0;
      area.last_column = kSheetColumns - 1;
    }
  }
  return self.Of(std::move(areas), kColumns ? RangeUnit::kColumns : RangeUnit::kRows);
}

template <RangeUnit kUnit>
Variant Unit(Self& self, const Arguments&) {
  return self.Of(self.areas(), kUnit);
}

Variant Select(Self& self, const Arguments&) {
  if (self.book().active != self.shared_sheet()) Refuse();
  self.sheet().view.selection = self.areas();
  return true;
}

// Areas.

class Areas final : public SheetObject<Areas> {
 public:
  static constexpr std::u16string_view kName = u"Areas";
  static std::span<const Member<Areas>> Members();
  Areas(ExcelPtr excel, BookPtr book, SheetPtr sheet, std::vector<CellRange> areas)
      : SheetObject(std::move(excel), std::move(book), std::move(sheet)),
        areas_(std::move(areas)) {}
  const std::vector<CellRange>& areas() const { return areas_; }

 private:
  std::vector<CellRange> areas_;
};

Variant AreaItem(Areas& self, const Arguments& given) {
  const std::int32_t number = given.Integer(0);
  if (number < 1 || static_cast<std::size_t>(number) > self.areas().size()) Refuse();
  return MakeBeside<RangeObject>(self,
                                 std::vector{self.areas()[static_cast<std::size_t>(number) - 1]});
}

constexpr Member<Areas> kAreasMembers[] = {
    {u"Count", kProperty, "",
     [](Areas& self, const Arguments&) { return Count(self.areas().size()); }},
    {u"Item", kProperty, "Index:i", AreaItem},
    {u"_Default", kProperty, "Index:i", AreaItem},
};

std::span<const Member<Areas>> Areas::Members() { return kAreasMembers; }

constexpr Member<Self> kMembers[] = {
    {u"Address", kProperty,
     "RowAbsolute?b ColumnAbsolute?b ReferenceStyle?i External?b RelativeTo?v", Address},
    {u"Row", kProperty, "",
     [](Self& self, const Arguments&) -> Variant { return self.first().first_row + 1; }},
    {u"Column", kProperty, "",
     [](Self& self, const Arguments&) -> Variant { return self.first().first_column + 1; }},
    {u"Count", kProperty, "",
     [](Self& self, const Arguments&) -> Variant {
       const std::int64_t count = CountOf(self);
       if (count > INT32_MAX) Refuse(u"Overflow");
       return static_cast<std::int32_t>(count);
     }},
    {u"CountLarge", kProperty, "",
     [](Self& self, const Arguments&) -> Variant { return static_cast<double>(CountOf(self)); }},
    {u"Rows", kProperty, "", Unit<RangeUnit::kRows>},
    {u"Columns", kProperty, "", Unit<RangeUnit::kColumns>},
    {u"Cells", kProperty, "", Unit<RangeUnit::kCells>},
    {u"Areas", kProperty, "",
     [](Self& self, const Arguments&) -> Variant { return MakeBeside<Areas>(self, self.areas()); }},
    {u"Item", kProperty, "RowIndex:v ColumnIndex?v", RangeItem},
    {u"Offset", kProperty, "RowOffset?i ColumnOffset?i", Offset},
    {u"Resize", kProperty, "RowSize?i ColumnSize?i", Resize},
    {u"CurrentRegion", kProperty, "", CurrentRegion},
    {u"EntireColumn", kProperty, "", Entire<true>},
    {u"EntireRow", kProperty, "", Entire<false>},
    {u"Worksheet", kProperty, "",
     [](Self& self, const Arguments&) -> Variant {
       return MakeWorksheet(self.shared_excel(), self.shared_book(), self.shared_sheet());
     }},
    {u"Parent", kProperty, "",
     [](Self& self, const Arguments&) -> Variant {
       return MakeWorksheet(self.shared_excel(), self.shared_book(), self.shared_sheet());
     }},
    {u"Application", kProperty, "",
     [](Self& self, const Arguments&) -> Variant { return MakeApplication(self.shared_excel()); }},
    {u"Select", kMethod, "", Select},
    {u"Activate", kMethod, "", Select},
};

}  // namespace

std::span<const Member<RangeObject>> RangePlaceMembers() { return kMembers; }

std::span<const Member<RangeObject>> RangeObject::Members() {
  static const std::vector<Member<RangeObject>> all =
      Joined<RangeObject>({RangePlaceMembers(), RangeContentMembers(), RangeFormatMembers()});
  return all;
}

std::u16string RangeObject::FormulaText() const {
  std::u16string text;
  for (const CellRange& area : areas_) {
    if (!text.empty()) text += u",";
    text += QuotedSheetName(sheet().name) + u"!" + AreaText(area, true, true);
  }
  return text;
}

ObjectPtr RangeObject::Of(const CellRange& area, RangeUnit unit) const {
  return Of(std::vector{area}, unit);
}

ObjectPtr RangeObject::Of(std::vector<CellRange> areas, RangeUnit unit) const {
  for (const CellRange& area : areas) {
    if (!kWholeSheet.Contains(area.first_row, area.first_column) ||
        !kWholeSheet.Contains(area.last_row, area.last_column))
      Refuse();
  }
  return MakeBeside<RangeObject>(*this, std::move(areas), unit);
}

void RangeObject::CheckPermitted(SheetPermission permission) const {
  const SheetProtection& protection = sheet().protection;
  if (protection.of_contents && !protection.is_for_users_only &&
      !protection.permissions[permission])
    Refuse();
}

void RangeObject::CheckWritable() const {
  const SheetProtection& protection = sheet().protection;
  for (const CellRange& area : areas_) {
    if (protection.of_contents && !protection.is_for_users_only) {
      sheet().styles.ForEach(area, [](const CellStyle& style) {
        if (style.is_locked) Refuse(kSheetIsProtected);
      });
    }
    if (book().SplitsArray(sheet(), area)) Refuse(kCannotChangeArray);
  }
}

}  // namespace zavhost
