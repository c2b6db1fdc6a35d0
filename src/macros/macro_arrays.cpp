#include "macros/macro_arrays.h"

#include <new>

namespace zavrel {

std::optional<Failure> FillMacroArrays(std::span<MacroArray> arrays,
                                       FunctionRef<std::optional<Failure>()> make) {
  try {
    if (auto failure = make()) return failure;
    if (WriteMacroArrays(arrays)) return std::nullopt;
  } catch (const std::bad_alloc&) {
    for (MacroArray& array : arrays) array.elements = {};
    WriteMacroArrays(arrays);
  }
  return Failure(ExcelError::kValue);
}

}  // namespace zavrel
