#include "excel/coerce.h"

#include "excel/reference.h"

namespace zavrel {

ExcelResult LookUp(const XXloper& reference) { return CallExcel(xlCoerce, {reference}); }

ExcelResult CoerceTo(const XXloper& value, std::uint32_t types) {
  XLOPER12 wanted{};
  wanted.xltype = xltypeInt;
  wanted.val.w = static_cast<std::int32_t>(types);
  return CallExcel(xlCoerce, {value, XXloper::FromArgument(&wanted)});
}

ExcelResult LookUpFirstCell(const XXloper& reference) {
  const auto view = ReferenceView::Of(reference.record());
  if (!view) return {XXloper::Error(ExcelError::kRef), xlretFailed};
  const XLREF12& first = view->areas().front();
  const OneArea cell(*view, {first.rwFirst, first.rwFirst, first.colFirst, first.colFirst});
  return LookUp(XXloper::FromArgument(&cell.record()));
}

}  // namespace zavrel
