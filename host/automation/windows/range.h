#pragma once
// Range objects: cells of a sheet, or its rows or columns one by one.

#include <optional>
#include <string_view>
#include <vector>

#include "host/automation/windows/objects.h"
#include "host/workbook/cell_names.h"

namespace zavhost {

/// What Count counts and Item gives.
enum class RangeUnit { kCells, kRows, kColumns };

class RangeObject final : public SheetObject<RangeObject> {
 public:
  static constexpr std::u16string_view kName = u"Range";
  static std::span<const Member<RangeObject>> Members();

  RangeObject(ExcelPtr excel, BookPtr book, SheetPtr sheet, std::vector<CellRange> areas,
              RangeUnit unit = RangeUnit::kCells)
      : SheetObject(std::move(excel), std::move(book), std::move(sheet)),
        areas_(std::move(areas)),
        unit_(unit) {}

  const std::vector<CellRange>& areas() const { return areas_; }
  const CellRange& first() const { return areas_.front(); }
  CellPosition corner() const { return {first().first_row, first().first_column}; }
  RangeUnit unit() const { return unit_; }
  /// As a formula has it: "Sheet1!$A$1:$B$2".
  std::u16string FormulaText() const;

  /// Another range of the same sheet. Refuses one that leaves it.
  ObjectPtr Of(const CellRange& area, RangeUnit unit = RangeUnit::kCells) const;
  ObjectPtr Of(std::vector<CellRange> areas, RangeUnit unit = RangeUnit::kCells) const;

  /// Calls visit(cell) for every cell of every area, row by row.
  template <class Visit>
  void ForEachCell(const Visit& visit) const {
    for (const CellRange& area : areas_) {
      for (std::int32_t row = area.first_row; row <= area.last_row; ++row) {
        for (std::int32_t column = area.first_column; column <= area.last_column; ++column)
          visit(CellPosition{row, column});
      }
    }
  }
  /// Refuses a change of locked cells of a protected sheet, or one that splits an array.
  void CheckWritable() const;
  /// Refuses a change that the protection of the sheet does not permit.
  void CheckPermitted(SheetPermission permission) const;

 private:
  std::vector<CellRange> areas_;
  RangeUnit unit_;
};

/// A range object; nothing for a range without rows.
template <class Self>
Variant RowsAsObject(const Self& self, const CellRange& rows) {
  return rows.rows() > 0 ? MakeBeside<RangeObject>(self, std::vector{rows}) : nullptr;
}

inline constexpr CellRange kWholeSheet{0, 0, kSheetRows - 1, kSheetColumns - 1};

std::span<const Member<RangeObject>> RangePlaceMembers();
std::span<const Member<RangeObject>> RangeContentMembers();
std::span<const Member<RangeObject>> RangeFormatMembers();

/// The item at a row and a column, or at one number; both may lie outside of the range.
Variant RangeItem(RangeObject& self, const Arguments& given);

/// The cells that the argument of a Range property names: a text such as "A1:B2,D4" or a defined
/// name, or a range object. `sheet` is that of unqualified cells.
struct NamedCells {
  SheetPtr sheet;
  std::vector<CellRange> areas;
};
std::optional<NamedCells> CellsNamed(Book& book, const SheetPtr& sheet, std::u16string_view text);
/// The result of a Range property with both of its arguments, of any sheet of the workbook.
ObjectPtr RangeFrom(const ExcelPtr& excel, const BookPtr& book, const SheetPtr& sheet,
                    const Arguments& given);

/// Refuses what Excel does not take as a formula, here without its "=".
void CheckFormula(const Book& book, std::u16string_view text);

/// The cells of the sheet that hold something or have a style; A1 if there are none.
CellRange UsedCells(Book& book, const SheetState& sheet);

}  // namespace zavhost
