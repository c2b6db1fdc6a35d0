// ZavrelWriteRangeVB: writes a block of values into a worksheet range for the macro add-in.
#include "contracts/message_ids.h"
#include "diagnostics/vek_exception.h"
#include "excel/excel_call.h"
#include "excel/reference.h"
#include "frame/macro_call.h"
#include "macros/windows/double_array.h"
#include "macros/windows/range_object.h"
#include "macros/windows/vb_array.h"
#include "platform/export.h"

namespace zavrel {
namespace {

constexpr const char* kPlace = "ZavrelWriteRangeVB";

bool Refused(const ExcelResult& result) {
  const XLOPER12& record = result.value.record();
  return !result.ok() || (result.value.Is(xltypeErr) && record.val.err != 0) ||
         (result.value.Is(xltypeBool) && record.val.xbool == 0);
}

}  // namespace

/// Writes `values` into the range object in `range`, from its top left. `values` is a
/// two-dimensional array of doubles or an array of any simple type; a one-dimensional array is one
/// row. Results of other entry points that stand for an error or a blank are written as that.
/// Returns 0, or the number of the failure, which ZavrelGetExceptionInfoVB explains; after a
/// failure nothing has been written.
ZAV_EXPORT std::uint32_t ZavrelWriteRangeVB(const VARIANT* range, SAFEARRAY** values) {
  return MacroCall(kPlace, [&] {
    const auto target = RangeIn(range);
    if (!target) throw VekInvalidDataType(kPlace, messages::kMessageInvalidDataType);
    const OneArea reference(target->sheet_id, target->area);
    const XXloper block = CellBlockFromVbArray(ArrayAt(values));
    if (Refused(CallExcel(xlSet, {XXloper::FromArgument(&reference.record()), block}))) {
      throw VekxlSetFailed(kPlace, messages::kMessageXlSetFailed);
    }
  });
}

}  // namespace zavrel
