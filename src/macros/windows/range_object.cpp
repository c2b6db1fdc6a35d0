#include "macros/windows/range_object.h"

#include "excel/reference.h"
#include "macros/windows/macro_variant.h"

namespace zavrel {
namespace {

/// The id of a range object's sheet, which is "[Book]Sheet" in the C API.
std::optional<std::uint64_t> SheetOf(IDispatch* range) {
  const auto sheet = AutomationProperty(range, L"Worksheet");
  const auto sheet_name = AutomationProperty(ObjectIn(sheet), L"Name");
  const auto book = AutomationProperty(ObjectIn(sheet), L"Parent");
  const auto book_name = AutomationProperty(ObjectIn(book), L"Name");
  if (!sheet_name || sheet_name->get().vt != VT_BSTR || !book_name ||
      book_name->get().vt != VT_BSTR) {
    return std::nullopt;
  }
  return SheetIdOf(u"[" + std::u16string(BstrView(book_name->get().bstrVal)) + u"]" +
                   std::u16string(BstrView(sheet_name->get().bstrVal)));
}

long CountOf(IDispatch* range, const wchar_t* what) {
  const auto counted = AutomationProperty(range, what);
  return IntegerIn(AutomationProperty(ObjectIn(counted), L"Count")).value_or(0);
}

/// The area of `rows` and `columns` that starts at the range object's first cell. The object counts
/// from 1.
std::optional<XLREF12> AreaFrom(IDispatch* range, long rows, long columns) {
  const long row = IntegerIn(AutomationProperty(range, L"Row")).value_or(0);
  const long column = IntegerIn(AutomationProperty(range, L"Column")).value_or(0);
  if (row < 1 || column < 1 || rows < 1 || columns < 1 || row > kExcelRows - rows + 1 ||
      column > kExcelColumns - columns + 1) {
    return std::nullopt;
  }
  return XLREF12{static_cast<std::int32_t>(row - 1), static_cast<std::int32_t>(row + rows - 2),
                 static_cast<std::int32_t>(column - 1),
                 static_cast<std::int32_t>(column + columns - 2)};
}

std::optional<SheetArea> OnSheet(std::optional<std::uint64_t> sheet, std::optional<XLREF12> area) {
  if (!sheet || !area) return std::nullopt;
  return SheetArea{*sheet, *area};
}

}  // namespace

std::optional<SheetArea> RangeIn(const VARIANT* designator) {
  const auto object = CopyOf(designator);
  IDispatch* range = ObjectIn(object);
  if (CountOf(range, L"Areas") != 1) return std::nullopt;
  return OnSheet(SheetOf(range),
                 AreaFrom(range, CountOf(range, L"Rows"), CountOf(range, L"Columns")));
}

std::optional<SheetArea> FirstCellIn(const VARIANT* designator) {
  const auto object = CopyOf(designator);
  IDispatch* range = ObjectIn(object);
  return OnSheet(SheetOf(range), AreaFrom(range, 1, 1));
}

}  // namespace zavrel
