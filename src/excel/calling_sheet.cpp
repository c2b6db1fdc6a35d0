#include "excel/calling_sheet.h"

#include "excel/coerce.h"
#include "excel/reference.h"

namespace zavrel {

OrFailure<std::optional<std::uint64_t>> ConvertedSheetId(const XLOPER12& reference) {
  const ExcelResult converted = CoerceTo(XXloper::FromArgument(&reference), xltypeRef);
  if (WantsReturn(converted)) return Failure::Uncalculated();
  const auto view = ReferenceView::Of(converted.value.record());
  return view ? view->sheet_id() : std::nullopt;
}

OrFailure<std::optional<std::uint64_t>> CallingSheetId(const XLOPER12& reference) {
  auto converted = ConvertedSheetId(reference);
  if (!converted.ok() || *converted) return converted;
  const OrFailure<std::u16string> name = SheetNameOf(XXloper::FromArgument(&reference));
  if (!name.ok()) return name.failure();
  return SheetIdOf(*name);
}

}  // namespace zavrel
