// ZavrelWriteRangeVB: writes a block of values into a worksheet range for the macro add-in.
#include "addin/worksheet_function.h"
#include "companions/messages/message_ids.h"
#include "data/windows/vb_array.h"
#include "diagnostics/vek_exception.h"
#include "excel/excel_call.h"
#include "platform/export.h"

namespace zavrel {
namespace {

constexpr const char* kPlace = "ZavrelWriteRangeVB";

[[noreturn]] void ThrowNoRange() {
  throw VekInvalidDataType(kPlace, messages::kMessageInvalidDataType);
}

/// A reference value with its one area beside it.
struct OneAreaReference {
  XLMREF12 areas{};
  XLOPER12 record{};
};

/// The sheet of a range object as the C API names it, "[Book]Sheet".
std::u16string SheetNameOf(IDispatch* range) {
  const auto sheet = AutomationProperty(range, L"Worksheet");
  const auto sheet_name = AutomationProperty(ObjectIn(sheet), L"Name");
  const auto book = AutomationProperty(ObjectIn(sheet), L"Parent");
  const auto book_name = AutomationProperty(ObjectIn(book), L"Name");
  if (!sheet_name || sheet_name->get().vt != VT_BSTR || !book_name ||
      book_name->get().vt != VT_BSTR)
    ThrowNoRange();
  return u"[" + std::u16string(BstrView(book_name->get().bstrVal)) + u"]" +
         std::u16string(BstrView(sheet_name->get().bstrVal));
}

long CountOf(IDispatch* range, const wchar_t* what) {
  const auto counted = AutomationProperty(range, what);
  return IntegerIn(AutomationProperty(ObjectIn(counted), L"Count")).value_or(0);
}

/// The first area of a range object; a range of several areas is refused, since a block has one
/// place.
XLREF12 AreaOf(IDispatch* range) {
  const long row = IntegerIn(AutomationProperty(range, L"Row")).value_or(0);
  const long column = IntegerIn(AutomationProperty(range, L"Column")).value_or(0);
  const long rows = CountOf(range, L"Rows");
  const long columns = CountOf(range, L"Columns");
  if (CountOf(range, L"Areas") != 1 || row < 1 || column < 1 || rows < 1 || columns < 1 ||
      row > kExcelRows - rows + 1 || column > kExcelColumns - columns + 1) {
    ThrowNoRange();
  }
  return {static_cast<std::int32_t>(row - 1), static_cast<std::int32_t>(row + rows - 2),
          static_cast<std::int32_t>(column - 1), static_cast<std::int32_t>(column + columns - 2)};
}

OneAreaReference ReferenceOf(const VARIANT* designator) {
  if (designator == nullptr) ThrowNoRange();
  OwnedVariant value;
  if (FAILED(VariantCopyInd(value.address(), Unconst(*designator)))) ThrowNoRange();
  if (value.get().vt != VT_DISPATCH || value.get().pdispVal == nullptr) ThrowNoRange();
  IDispatch* range = value.get().pdispVal;

  const ExcelResult sheet = CallExcel(xlSheetId, {XXloper::Text(SheetNameOf(range))});
  if (!sheet.ok() || !sheet.value.Is(xltypeRef)) ThrowNoRange();
  OneAreaReference reference;
  reference.areas.count = 1;
  reference.areas.reftbl[0] = AreaOf(range);
  reference.record.xltype = xltypeRef;
  reference.record.val.mref.idSheet = sheet.value.record().val.mref.idSheet;
  return reference;
}

bool Refused(const ExcelResult& result) {
  const XLOPER12& record = result.value.record();
  return !result.ok() || (result.value.Is(xltypeErr) && record.val.err != 0) ||
         (result.value.Is(xltypeBool) && record.val.xbool == 0);
}

}  // namespace

/// Writes `values` into the range object in `range`, from its top left. A two-dimensional array of
/// doubles or an array of any simple type, a one-dimensional array being one row. Returns 0, or the
/// number of the failure, which ZavrelGetExceptionInfoVB explains; after a failure nothing was
/// written.
ZAV_EXPORT std::uint32_t ZavrelWriteRangeVB(const VARIANT* range, SAFEARRAY** values) {
  return MacroCall(kPlace, [&] {
    OneAreaReference reference = ReferenceOf(range);
    reference.record.val.mref.lpmref = &reference.areas;
    const XXloper block = CellBlockFromVbArray(values == nullptr ? nullptr : *values);
    if (Refused(CallExcel(xlSet, {XXloper::FromArgument(&reference.record), block}))) {
      throw VekxlSetFailed(kPlace, messages::kMessageXlSetFailed);
    }
  });
}

}  // namespace zavrel
