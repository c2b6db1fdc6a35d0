#pragma once
// The part of whole columns and rows that is in use, as the host counts its cells.

#include "data/cell_reader.h"
#include "excel/reference.h"

namespace zavrel {

/// Cuts an area of whole columns after its last row with a cell that is not blank, one of whole
/// rows after the last such column. Without such a cell the area is left without rows. Takes some
/// twenty calls, whatever the sheet's size: a host need not hand over a million blank cells.
ReadOutcome CutToUsedPart(const ReferenceView& reference, XLREF12& area);

}  // namespace zavrel
