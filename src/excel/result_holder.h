#pragma once
// Keeps the result of a worksheet function alive until the same thread returns its next one.

#include "excel/xxloper.h"

namespace zavrel {

/// Reserves the thread slot; a thread's holder is made when the thread first returns a result.
/// Throws VekKernelObjectError if the process has no slot left.
void OpenResultHolder();
/// Releases every held result and the slot. Results handed out before are no longer valid.
void CloseResultHolder();

/// Stores the result for this thread in place of the previous one and returns the record for Excel.
/// Never throws: if memory runs out, it returns the shared #N/A.
XLOPER12* ReturnToExcel(const XXloper& result) noexcept;

}  // namespace zavrel
