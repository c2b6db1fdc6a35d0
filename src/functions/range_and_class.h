#pragma once
// The two arguments that the functions on classes of cells begin with.

#include <optional>

#include "data/get_parameters.h"

namespace zavrel {

inline Parameters RangeAndClass(const XLOPER12* range, const XLOPER12* class_code) {
  const XLOPER12* const arguments[] = {range, class_code};
  return GetParameters("RL", MissingDataPolicy::kNumbersOnly, arguments);
}

/// The class that a code names; nothing for a code that names none.
inline std::optional<CellClass> ClassOf(std::int32_t code) {
  if (code < 0 || code >= kCellClasses) return std::nullopt;
  return static_cast<CellClass>(code);
}

}  // namespace zavrel
