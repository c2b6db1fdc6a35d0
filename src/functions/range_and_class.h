#pragma once
// The first two arguments of the functions on classes of cells.

#include "frame/reading.h"

namespace zavrel {

inline constexpr Reading kRangeAndClass("RL", MissingDataPolicy::kNumbersOnly);

/// The class in the second argument; #VALUE! for an unknown code.
inline OrFailure<CellClass> ClassIn(const Parameters& read) {
  const std::int32_t code = read.integer(1);
  if (code < 0 || code >= kCellClasses) return Failure(ExcelError::kValue);
  return static_cast<CellClass>(code);
}

}  // namespace zavrel
