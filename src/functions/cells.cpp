// What the cells of a range are: ZavCountCellsByType.
#include "addin/worksheet_function.h"
#include "data/get_parameters.h"
#include "platform/export.h"

namespace zavrel {

/// The number of cells of a class: 0 every cell, 1 numbers, 2 cells that are not blank, 3 those of
/// them that are no numbers, 4 blank cells; of whole columns and rows all of them, used or not. Any
/// other class code: #VALUE!.
ZAV_EXPORT XLOPER12* ZavrelCountCellsByType(const XLOPER12* range, const XLOPER12* class_code) {
  return WorksheetFunction("ZavrelCountCellsByType", [&]() -> XXloper {
    const XLOPER12* const arguments[] = {range, class_code};
    const Parameters parameters = GetParameters("RL", MissingDataPolicy::kNumbersOnly, arguments);
    if (!parameters.accepted()) return parameters.failure();
    const std::int32_t code = parameters.integer(1);
    if (code < 0 || code >= kCellClasses) return XXloper::Error(ExcelError::kValue);
    const std::size_t count = parameters.data(0).CountOfClass(static_cast<CellClass>(code));
    return XXloper::Number(static_cast<double>(count));
  });
}

}  // namespace zavrel
