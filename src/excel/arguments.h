#pragma once

#include <span>

#include "excel/xxloper.h"

namespace zavrel {

/// The arguments of a call as Excel passes them. A null pointer counts as an omitted argument.
using Arguments = std::span<const XLOPER12* const>;

inline bool IsOmitted(const XLOPER12* argument) {
  return argument == nullptr || TypeOf(*argument) == xltypeMissing;
}

}  // namespace zavrel
