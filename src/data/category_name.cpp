#include "data/category_name.h"

#include "excel/coerce.h"

namespace zavrel {
namespace {

OrFailure<std::u16string> NamedByHost(const XXloper& value) {
  const ExcelResult text = CoerceTo(value, xltypeStr);
  if (WantsReturn(text)) return Failure::Uncalculated();
  if (!text.ok() || text.value.type() != xltypeStr) return Failure(ExcelError::kValue);
  return std::u16string(text.value.text());
}

}  // namespace

OrFailure<std::u16string> CategoryNameOf(const SingleValue& cell) {
  switch (cell.tag) {
    case CellTag::kText:
      return std::u16string(cell.text);
    case CellTag::kNumber:
      return NamedByHost(XXloper::Number(cell.number));
    case CellTag::kBoolean:
      return NamedByHost(XXloper::Boolean(cell.code != 0));
    case CellTag::kInteger:
      return NamedByHost(XXloper::Integer(cell.code));
    case CellTag::kBlank:
    case CellTag::kMissing:
    case CellTag::kError:
      break;
  }
  return std::u16string();
}

}  // namespace zavrel
