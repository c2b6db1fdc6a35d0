#include "excel/coerce.h"

namespace zavrel {

ExcelResult LookUp(const XXloper& reference) { return CallExcel(xlCoerce, {reference}); }

ExcelResult CoerceTo(const XXloper& value, std::uint32_t types) {
  XLOPER12 wanted{};
  wanted.xltype = xltypeInt;
  wanted.val.w = static_cast<std::int32_t>(types);
  return CallExcel(xlCoerce, {value, XXloper::FromArgument(&wanted)});
}

ExcelResult LookUpFirstCell(const ReferenceView& reference) {
  const XLREF12& first = reference.areas().front();
  const OneArea cell(reference, {first.rwFirst, first.rwFirst, first.colFirst, first.colFirst});
  return LookUp(XXloper::FromArgument(&cell.record()));
}

}  // namespace zavrel
