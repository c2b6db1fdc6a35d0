#pragma once
// Arrays for a macro, written into its VARIANTs by their addresses.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <variant>
#include <vector>

#include "data/cell_columns.h"
#include "excel/or_failure.h"
#include "platform/function_ref.h"
#include "platform/variant_copies.h"

namespace zavrel {

/// The elements of an array. Their type decides which kind of array the macro gets:
///   cells     VARIANTs: a number VT_R8, a text VT_BSTR, a boolean VT_BOOL, an error VT_ERROR with
///             Excel's status, an integer VT_I2 (the nearest that fits), VT_EMPTY for blank cells
///   texts     wide strings (VT_BSTR)
///   doubles   VT_R8
///   integers  VT_I4
/// std::monostate makes the VARIANT empty.
using MacroElements =
    std::variant<std::monostate, std::vector<SingleValue>, std::vector<std::u16string>,
                 std::vector<double>, std::vector<std::int32_t>>;

struct MacroArray {
  std::uint64_t address = 0;  // 0: not wanted
  MacroElements elements{};
};

inline constexpr std::size_t kMostMacroArrays = 2;

/// Replaces the contents of the VARIANTs at the addresses by the arrays and releases the old
/// contents. The arrays are one-dimensional with lower bound 1, as macros count a range's cells; an
/// array without elements has the bounds 1 to 0.
///
/// Returns false and changes nothing if a VARIANT must not be written: its address is not a
/// multiple of 8, it is not entirely in committed writable memory, it overlaps the other one, or
/// its contents cannot be released (an unknown type, a locked array). The caller must make sure
/// that the address came from a macro.
///
/// Throws std::bad_alloc, also without changing anything. Making VARIANTs empty needs no memory.
bool WriteMacroArrays(std::span<const MacroArray> arrays);

/// Calls `make` to set the elements of the arrays, then writes them. Returns the call's failure, if
/// any: that of `make`, which leaves the VARIANTs unchanged, or #VALUE! if a VARIANT must not be
/// written or memory runs out. If memory runs out, the VARIANTs become empty.
std::optional<Failure> FillMacroArrays(std::span<MacroArray> arrays,
                                       FunctionRef<std::optional<Failure>()> make);

}  // namespace zavrel
