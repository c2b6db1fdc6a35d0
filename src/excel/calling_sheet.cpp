#include "excel/calling_sheet.h"

#include "excel/coerce.h"
#include "excel/reference.h"

namespace zavrel {

OrFailure<std::optional<std::uint64_t>> CallingSheetId(const XLOPER12& reference) {
  const XXloper argument = XXloper::FromArgument(&reference);
  const ExcelResult converted = CoerceTo(argument, xltypeRef);
  if (WantsReturn(converted)) return Failure::Uncalculated();
  if (const auto view = ReferenceView::Of(converted.value.record()); view && view->sheet_id())
    return view->sheet_id();
  return SheetIdOf(SheetNameOf(argument));
}

}  // namespace zavrel
