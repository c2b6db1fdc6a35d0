#pragma once
// Writes category names and positions into a macro's arrays.

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "frame/cell_result.h"

namespace zavrel {

using CategoryNames = std::span<const std::u16string_view>;
/// Counted from 0; macros get them counted from 1.
using CategoryPositions = std::span<const std::int32_t>;

// Each writes strings (VT_BSTR) or 32-bit integers (VT_I4) and returns the call's result: their
// number, or #VALUE! if the address or entry does not exist, the VARIANT must not be written
// (macros/macro_arrays.h) or memory runs out.

/// Write into the array that a macro has arranged for the next ZavCategoryNames or
/// ZavCategoryIndices; the arrangement is used up. std::nullopt if there is none.
std::optional<CellResult> FillNextCategoryNames(CategoryNames names);
std::optional<CellResult> FillNextCategoryIndices(CategoryPositions positions);

/// Drop what a macro has arranged: the call that it was meant for has failed.
void ForgetNextCategoryNames();
void ForgetNextCategoryIndices();

/// Write into the VARIANT at the address in a text; without a text, or with 0, nothing is written.
CellResult FillNamesByAddress(CategoryNames names, const char* address);
CellResult FillIndicesByAddress(CategoryPositions positions, const char* address);

/// Write into the VARIANT entered under an id; the entry is used up.
CellResult FillNamesById(CategoryNames names, const char* id);
CellResult FillIndicesById(CategoryPositions positions, const char* id);
/// Drop the entry under an id, if it is one for names or for positions.
void ForgetNamesEntry(const char* id);
void ForgetIndicesEntry(const char* id);

}  // namespace zavrel
