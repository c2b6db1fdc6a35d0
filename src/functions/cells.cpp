// Functions on the kinds of cells: ZavCountCellsByType, ZavIsBlank, ZavGetCellValues.
#include <utility>

#include "frame/calling_array.h"
#include "frame/worksheet_function.h"
#include "functions/macro_cell_values.h"
#include "functions/put_cell.h"
#include "functions/range_and_class.h"
#include "platform/export.h"
#include "platform/white_space.h"

namespace zavrel {
namespace {

constexpr Reading kGetCellValues = kRangeAndClass.WithoutMemory(ExcelError::kValue);

/// The cells of a class in order over the calling range. Throws std::bad_alloc.
CellResult ValuesOfClass(const ExcelData& data, CellClass cell_class) {
  OrFailure<XXloperArray> values = ArrayOfCaller();
  if (!values.ok()) return values.failure();
  std::size_t next = 0;
  for (std::size_t i = 0; i < data.size() && next < values->size(); ++i) {
    if (BelongsTo(data.cells().tag(i), cell_class)) PutCell(*values, next++, data[i]);
  }
  return (*std::move(values)).Finish();
}

}  // namespace

/// The number of cells of a class: 0 every cell, 1 numbers, 2 cells that are not blank, 3 cells
/// that are neither blank nor numbers, 4 blank cells. Whole columns and rows count as their used
/// part. Any other class code: #VALUE!.
ZAV_EXPORT XLOPER12* ZavrelCountCellsByType(const XLOPER12* range, const XLOPER12* class_code) {
  return WorksheetFunction("ZavrelCountCellsByType", kRangeAndClass, {range, class_code},
                           [](const Parameters& read) -> CellResult {
                             const OrFailure<CellClass> cell_class = ClassIn(read);
                             if (!cell_class.ok()) return cell_class.failure();
                             return read.data(0).CountOfClass(*cell_class);
                           });
}

/// TRUE for an empty cell and for a text of white space alone, including no-break spaces. An
/// omitted argument or an error: #VALUE!.
ZAV_EXPORT XLOPER12* ZavrelIsBlank(const XLOPER12* value) {
  return WorksheetFunction("ZavrelIsBlank", Reading("S"), {value}, [](const Parameters& read) {
    return XXloper::Boolean(Trimmed(read.text(0)).empty());
  });
}

/// An array formula: the cells of a class (as ZavCountCellsByType numbers them) in their order,
/// each with its own value, row by row over the calling range, at most 65535 x 256 cells; #N/A in
/// the cells after the last. A blank cell is an empty value; whole columns and rows are listed up
/// to their last used row or column. If a macro has arranged arrays for this call, they get the
/// cells, and the result is the number of cells. If the call does not come from cells: #REF!.
/// Another class code, or too little memory: #VALUE!.
ZAV_EXPORT XLOPER12* ZavrelGetCellValues(const XLOPER12* range, const XLOPER12* class_code) {
  return WorksheetFunction("ZavrelGetCellValues", kGetCellValues.OnFailure(&ForgetNextCellValues),
                           {range, class_code}, [](const Parameters& read) -> CellResult {
                             const OrFailure<CellClass> cell_class = ClassIn(read);
                             if (!cell_class.ok()) return cell_class.failure();
                             if (const auto filled = FillNextCellValues(read.data(0), *cell_class))
                               return *filled;
                             return ValuesOfClass(read.data(0), *cell_class);
                           });
}

}  // namespace zavrel
