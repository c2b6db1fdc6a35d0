#pragma once
// Category names and positions for a macro, written into arrays of its own.

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "frame/cell_result.h"

namespace zavrel {

using CategoryNames = std::span<const std::u16string_view>;
/// From 0; macros get them counted from 1.
using CategoryPositions = std::span<const std::int32_t>;

// Each writes strings (VT_BSTR) or 32-bit integers (VT_I4) and gives the call's result: how many
// they are, or #VALUE! when there is no such address or entry, the VARIANT must not be written
// (macros/macro_arrays.h) or memory does not suffice.

/// What a macro has arranged for the next ZavCategoryNames or ZavCategoryIndices, and is used up
/// then. Nothing when it has arranged nothing.
std::optional<CellResult> FillNextCategoryNames(CategoryNames names);
std::optional<CellResult> FillNextCategoryIndices(CategoryPositions positions);

/// The VARIANT at the address in a text; an absent text or 0 is none, and only counts.
CellResult FillNamesByAddress(CategoryNames names, const char* address);
CellResult FillIndicesByAddress(CategoryPositions positions, const char* address);

/// The VARIANT entered under an id, whose entry is used up.
CellResult FillNamesById(CategoryNames names, const char* id);
CellResult FillIndicesById(CategoryPositions positions, const char* id);

}  // namespace zavrel
