#pragma once
// Arrays for a macro: written into VARIANTs of its own, by their addresses.

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

namespace zavrel {

/// The elements of an array, whose type says what kind of array the macro gets:
///   cells     VARIANTs: a number VT_R8, a text VT_BSTR, a boolean VT_BOOL, an error VT_ERROR with
///             Excel's status, an integer VT_I2 (the nearest that fits), VT_EMPTY for blank cells
///   texts     wide strings (VT_BSTR)
///   doubles   VT_R8
///   integers  VT_I4
/// Without elements the VARIANT becomes empty.
using MacroElements =
    std::variant<std::monostate, std::vector<SingleValue>, std::vector<std::u16string>,
                 std::vector<double>, std::vector<std::int32_t>>;

struct MacroArray {
  std::uint64_t address = 0;  // 0: not wanted
  MacroElements elements{};
};

inline constexpr std::size_t kMostMacroArrays = 2;

/// Puts the arrays in the place of what the VARIANTs at their addresses hold, which goes. They are
/// one-dimensional and count from 1, as a range's cells do for a macro; an array of no elements has
/// the bounds 1 to 0.
///
/// False, and nothing is touched, when a VARIANT must not be written: it does not lie at a multiple
/// of 8, whole in committed memory that can be written, and apart from the other one; or what it
/// holds cannot go (no type of a VARIANT, an array that somebody keeps locked). Whether the address
/// is a macro's at all is for the caller to know.
///
/// Throws std::bad_alloc, and nothing is touched then. Writing no elements needs no memory.
bool WriteMacroArrays(std::span<const MacroArray> arrays);

/// Lets `make` give the arrays their elements, and writes them; gives the call's failure: that of
/// `make`, before anything is touched, or #VALUE!, when a VARIANT must not be written and when
/// memory does not suffice, which leaves the VARIANTs empty.
std::optional<Failure> FillMacroArrays(std::span<MacroArray> arrays,
                                       FunctionRef<std::optional<Failure>()> make);

}  // namespace zavrel
