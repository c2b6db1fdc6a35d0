#pragma once
// Conversions by the host, which knows its cells and its user's number formats.

#include <cstdint>

#include "excel/excel_call.h"
#include "excel/reference.h"

namespace zavrel {

/// The value of a reference: a single value for one cell, an array for more. Hosts differ on
/// references of several areas, so these must be looked up area by area.
ExcelResult LookUp(const XXloper& reference);
/// The value converted to one of these types. Fails with #VALUE! if that is not possible.
ExcelResult CoerceTo(const XXloper& value, std::uint32_t types);

/// True when the host answered that a cell is not calculated yet or that it wants the call to end:
/// the worksheet function must return at once, and is called again.
inline bool WantsReturn(const ExcelResult& result) {
  return result.return_code == xlretUncalced || result.return_code == xlretAbort;
}

/// The value of the upper left cell of a reference's first area.
ExcelResult LookUpFirstCell(const ReferenceView& reference);

}  // namespace zavrel
