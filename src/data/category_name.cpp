#include "data/category_name.h"

#include "excel/coerce.h"

namespace zavrel {
namespace {

std::optional<std::u16string> NamedByHost(const XXloper& value) {
  const ExcelResult text = CoerceTo(value, xltypeStr);
  if (WantsReturn(text)) return std::nullopt;
  return std::u16string(text.ok() ? text.value.text() : std::u16string_view());
}

}  // namespace

std::optional<std::u16string> CategoryNameOf(const SingleValue& cell) {
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
