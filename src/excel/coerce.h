#pragma once
// Conversions that are left to the host, which knows its cells and its user's number formats.

#include <cstdint>

#include "excel/excel_call.h"
#include "excel/reference.h"

namespace zavrel {

/// The value of a reference: of one cell a single value, of more an array. Over a reference of
/// several areas hosts differ; it is to be asked area by area.
ExcelResult LookUp(const XXloper& reference);
/// The value as one of these types. Fails, with #VALUE!, when it cannot be one.
ExcelResult CoerceTo(const XXloper& value, std::uint32_t types);

/// True when the host answered that a cell is not calculated yet, or that it wants the call to end:
/// the worksheet function has to return at once and is called again.
inline bool WantsReturn(const ExcelResult& result) {
  return result.return_code == xlretUncalced || result.return_code == xlretAbort;
}

/// The upper left cell of a reference's first area, whatever its size.
ExcelResult LookUpFirstCell(const ReferenceView& reference);

}  // namespace zavrel
