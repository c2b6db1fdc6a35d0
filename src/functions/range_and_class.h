#pragma once
// The two arguments that the functions on classes of cells begin with.

#include "frame/reading.h"

namespace zavrel {

inline constexpr Reading kRangeAndClass("RL", MissingDataPolicy::kNumbersOnly);

/// The class that the second argument names; #VALUE! for a code that names none.
inline OrFailure<CellClass> ClassIn(const Parameters& read) {
  const std::int32_t code = read.integer(1);
  if (code < 0 || code >= kCellClasses) return Failure(ExcelError::kValue);
  return static_cast<CellClass>(code);
}

}  // namespace zavrel
