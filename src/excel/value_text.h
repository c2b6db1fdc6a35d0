#pragma once
// Values as the log and a debugger show them.

#include <string>

#include "excel/xloper12.h"

namespace zavrel {

/// A single value by its type and content, "XLOPER of type 1: 2.5"; an array by its size and
/// content, "XLOPER array (2 x 2) = {1, "a"; TRUE, #N/A}", at most 64 elements of it; texts quoted
/// and cut to 100 units. UTF-8 in one line, whatever the value holds.
std::string ValueText(const XLOPER12& value);

/// "#N/A" for Excel's error code; "#ERROR 99" for one that Excel does not have.
std::string ErrorName(std::int32_t code);

}  // namespace zavrel
