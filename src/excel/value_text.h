#pragma once
// Values as text, for the log and a debugger.

#include <string>

#include "excel/xloper12.h"

namespace zavrel {

/// A single value by its type and content, "XLOPER of type 1: 2.5"; an array by its size and at
/// most 64 elements, "XLOPER array (2 x 2) = {1, "a"; TRUE, #N/A}". Texts are quoted and cut to 100
/// units. Always one line of UTF-8.
std::string ValueText(const XLOPER12& value);

/// "#N/A" for Excel's error code; "#ERROR 99" for one that Excel does not have.
std::string ErrorName(std::int32_t code);

}  // namespace zavrel
