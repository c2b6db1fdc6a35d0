#pragma once
// The result of an array formula, cut to the range in which it was entered.

#include <algorithm>
#include <cstdint>

#include "excel/or_failure.h"
#include "excel/reference.h"
#include "excel/xxloper.h"

namespace zavrel {

/// The most rows and columns that a result fills; further ones of a calling range stay #N/A.
inline constexpr std::int32_t kMostResultRows = 65535;
inline constexpr std::int32_t kMostResultColumns = 256;

/// An array of #N/A with the rows and columns of the calling range, up to those limits; #REF! if
/// the call does not come from cells. Throws std::bad_alloc.
inline OrFailure<XXloperArray> ArrayOfCaller() {
  const OrFailure<CallingRange> caller = CallingRange::Ask();
  if (!caller.ok()) return caller.failure();
  if (!caller->is_range()) return Failure(ExcelError::kRef);
  return XXloperArray(std::min(caller->rows(), kMostResultRows),
                      std::min(caller->columns(), kMostResultColumns));
}

}  // namespace zavrel
