#pragma once
// Keeps what a worksheet function returned alive until the same thread returns its next result.

#include "excel/xxloper.h"

namespace zavrel {

/// Reserves the thread slot; the holder of a thread is made when it first returns something. Throws
/// VekKernelObjectError when the process has no slot left.
void OpenResultHolder();
/// Releases every held result and the slot. Results handed out before are no longer valid.
void CloseResultHolder();

/// Stores the result for this thread, releasing the one before, and gives the record that Excel
/// gets. Never throws: without memory for a holder the shared #N/A is returned.
XLOPER12* ReturnToExcel(const XXloper& result) noexcept;

}  // namespace zavrel
