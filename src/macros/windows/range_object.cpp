#include "macros/windows/range_object.h"

#include "diagnostics/vek_exception.h"
#include "excel/reference.h"
#include "macros/windows/macro_variant.h"
#include "msexcel/windows/workbook.h"

namespace zavrel {
namespace {

/// The id of a range object's sheet, which is "[Book]Sheet" in the C API.
std::optional<std::uint64_t> SheetOf(const MsExcel::Range& range) {
  const MsExcel::Worksheet sheet = range.ParentSheet();
  const auto id = SheetIdOf(u"[" + sheet.ParentBook().Name() + u"]" + sheet.Name());
  return id.ok() ? *id : std::nullopt;
}

/// The area of `rows` and `columns` that starts at the range object's first cell. The object counts
/// from 1.
std::optional<SheetArea> AreaFrom(const MsExcel::Range& range, long rows, long columns) {
  const long row = range.Row(), column = range.Column();
  if (row < 1 || column < 1 || rows < 1 || columns < 1 || row > kExcelRows - rows + 1 ||
      column > kExcelColumns - columns + 1) {
    return std::nullopt;
  }
  const std::optional<std::uint64_t> sheet = SheetOf(range);
  if (!sheet) return std::nullopt;
  return SheetArea{
      *sheet,
      {static_cast<std::int32_t>(row - 1), static_cast<std::int32_t>(row + rows - 2),
       static_cast<std::int32_t>(column - 1), static_cast<std::int32_t>(column + columns - 2)}};
}

/// What `area_of` makes of the range object in a macro's VARIANT; nothing if there is none.
template <class AreaOf>
std::optional<SheetArea> OfRangeObject(const VARIANT* designator, AreaOf area_of) {
  const auto object = CopyOf(designator);
  if (!object || object->get().vt != VT_DISPATCH || object->get().pdispVal == nullptr)
    return std::nullopt;
  try {
    return area_of(MsExcel::Range(MsExcel::Object(object->get().pdispVal)));
  } catch (const VekExcelError&) {
    return std::nullopt;
  }
}

}  // namespace

std::optional<SheetArea> RangeIn(const VARIANT* designator) {
  return OfRangeObject(designator, [](const MsExcel::Range& range) -> std::optional<SheetArea> {
    if (range.AreaCount() != 1) return std::nullopt;
    return AreaFrom(range, range.RowCount(), range.ColumnCount());
  });
}

std::optional<SheetArea> FirstCellIn(const VARIANT* designator) {
  return OfRangeObject(designator,
                       [](const MsExcel::Range& range) { return AreaFrom(range, 1, 1); });
}

}  // namespace zavrel
