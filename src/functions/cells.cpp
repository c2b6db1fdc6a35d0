// What the cells of a range are: ZavCountCellsByType, ZavIsBlank, ZavGetCellValues.
#include <algorithm>
#include <new>
#include <optional>

#include "addin/worksheet_function.h"
#include "data/get_parameters.h"
#include "excel/reference.h"
#include "functions/macro_cell_values.h"
#include "functions/range_and_class.h"
#include "platform/export.h"

namespace zavrel {
namespace {

// An array formula's result at the most.
constexpr std::int32_t kMostResultRows = 65535;
constexpr std::int32_t kMostResultColumns = 256;

/// The property White_Space of Unicode; all of these are single units.
bool IsWhiteSpace(char16_t unit) {
  return (unit >= 0x0009 && unit <= 0x000D) || unit == 0x0020 || unit == 0x0085 || unit == 0x00A0 ||
         unit == 0x1680 || (unit >= 0x2000 && unit <= 0x200A) || unit == 0x2028 || unit == 0x2029 ||
         unit == 0x202F || unit == 0x205F || unit == 0x3000;
}

void Put(XXloperArray& values, std::size_t index, const SingleValue& cell) {
  switch (cell.tag) {
    case CellTag::kNumber:
      return values.SetNumber(index, cell.number);
    case CellTag::kInteger:
      return values.SetNumber(index, cell.code);
    case CellTag::kText:
      return values.SetText(index, cell.text);
    case CellTag::kBoolean:
      return values.SetBoolean(index, cell.code != 0);
    case CellTag::kError:
      return values.SetError(index, cell.code);
    case CellTag::kMissing:
    case CellTag::kBlank:
      return values.SetEmpty(index);
  }
}

/// The cells of a class in order, as many as there is room for, then #N/A. Throws std::bad_alloc.
XXloper ValuesOfClass(const ExcelData& data, CellClass cell_class, std::int32_t rows,
                      std::int32_t columns) {
  XXloperArray values(rows, columns);
  std::size_t next = 0;
  for (std::size_t i = 0; i < data.size() && next < values.size(); ++i) {
    if (BelongsTo(data.cells().tag(i), cell_class)) Put(values, next++, data[i]);
  }
  return std::move(values).Finish();
}

}  // namespace

/// The number of cells of a class: 0 every cell, 1 numbers, 2 cells that are not blank, 3 those of
/// them that are no numbers, 4 blank cells; of whole columns and rows all of them, used or not. Any
/// other class code: #VALUE!.
ZAV_EXPORT XLOPER12* ZavrelCountCellsByType(const XLOPER12* range, const XLOPER12* class_code) {
  return WorksheetFunction("ZavrelCountCellsByType", [&]() -> XXloper {
    const Parameters parameters = RangeAndClass(range, class_code);
    if (!parameters.accepted()) return parameters.failure();
    const auto cell_class = ClassOf(parameters.integer(1));
    if (!cell_class) return XXloper::Error(ExcelError::kValue);
    return XXloper::Number(static_cast<double>(parameters.data(0).CountOfClass(*cell_class)));
  });
}

/// TRUE for an empty cell and for a text of white space alone, the no-break space among it. An
/// omitted argument and an error are #VALUE!.
ZAV_EXPORT XLOPER12* ZavrelIsBlank(const XLOPER12* value) {
  return WorksheetFunction("ZavrelIsBlank", [&] {
    const XLOPER12* const arguments[] = {value};
    const Parameters parameters = GetParameters("S", MissingDataPolicy::kNumbersOnly, arguments);
    if (!parameters.accepted()) return parameters.failure();
    const std::u16string& text = parameters.text(0);
    return XXloper::Boolean(std::all_of(text.begin(), text.end(), IsWhiteSpace));
  });
}

/// An array formula: the cells of a class (as ZavCountCellsByType numbers them) in their order,
/// each with its own value, row by row over the calling range, at most 65535 x 256 of it; #N/A
/// where there are no more. A blank cell is an empty value; of whole columns and rows the used part
/// is listed. When a macro has arranged arrays for this call, they get the cells, and the result is
/// how many these are. Called from elsewhere than cells: #REF!. Another class code, or memory that
/// does not suffice: #VALUE!.
ZAV_EXPORT XLOPER12* ZavrelGetCellValues(const XLOPER12* range, const XLOPER12* class_code) {
  return WorksheetFunction("ZavrelGetCellValues", [&]() -> XXloper {
    try {
      const Parameters parameters = RangeAndClass(range, class_code);
      if (!parameters.accepted()) return parameters.failure();
      const auto cell_class = ClassOf(parameters.integer(1));
      if (!cell_class) return XXloper::Error(ExcelError::kValue);
      if (const auto filled = FillNextCellValues(parameters.data(0), *cell_class)) return *filled;
      // An answer that has to wait for a calculation is no range either.
      const CallingRange caller = CallingRange::Ask();
      if (!caller.is_range()) return XXloper::Error(ExcelError::kRef);
      return ValuesOfClass(parameters.data(0), *cell_class,
                           std::min(caller.rows(), kMostResultRows),
                           std::min(caller.columns(), kMostResultColumns));
    } catch (const std::bad_alloc&) {
      return XXloper::Error(ExcelError::kValue);
    }
  });
}

}  // namespace zavrel
