#include "macros/macro_arrays.h"

#include <algorithm>

namespace zavrel {

// This system has no macros and so no VARIANTs.
bool WriteMacroArrays(std::span<const MacroArray> arrays) {
  return std::all_of(arrays.begin(), arrays.end(),
                     [](const MacroArray& array) { return array.address == 0; });
}

}  // namespace zavrel
