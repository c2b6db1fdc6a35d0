#pragma once
// The arguments of the functions that take a distribution's parameters at their end.

#include <array>

#include "excel/xloper12.h"

// A name, another argument, and eight that hold the parameters.
#define ZAV_NAME_ARGUMENT_AND_PARAMETERS                                              \
  const XLOPER12 *a1, const XLOPER12 *a2, const XLOPER12 *a3, const XLOPER12 *a4,     \
      const XLOPER12 *a5, const XLOPER12 *a6, const XLOPER12 *a7, const XLOPER12 *a8, \
      const XLOPER12 *a9, const XLOPER12 *a10
#define ZAV_NAME_ARGUMENT_AND_PARAMETERS_LIST \
  std::array<const XLOPER12*, 10> { a1, a2, a3, a4, a5, a6, a7, a8, a9, a10 }
