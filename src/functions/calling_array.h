#pragma once
// The result of an array formula, cut to the cells that it was entered in.

#include <algorithm>
#include <cstdint>

#include "excel/or_failure.h"
#include "excel/reference.h"
#include "excel/xxloper.h"

namespace zavrel {

/// More rows and columns of a calling range than these stay #N/A.
inline constexpr std::int32_t kMostResultRows = 65535;
inline constexpr std::int32_t kMostResultColumns = 256;

/// As many rows and columns as the calling range has, each #N/A; #REF! when the call does not come
/// from cells or the host has still to calculate something. Throws std::bad_alloc.
inline OrFailure<XXloperArray> ArrayOfCaller() {
  const CallingRange caller = CallingRange::Ask();
  if (!caller.is_range()) return Failure(ExcelError::kRef);
  return XXloperArray(std::min(caller.rows(), kMostResultRows),
                      std::min(caller.columns(), kMostResultColumns));
}

}  // namespace zavrel
