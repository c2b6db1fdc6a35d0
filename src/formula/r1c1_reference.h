#pragma once
// References in R1C1 style, with the letters and brackets of a language: R[1]C[-1], Z(1)S(-1).

#include <optional>
#include <string>
#include <string_view>

#include "formula/a1_reference.h"
#include "formula/notation.h"

namespace formula {

/// The longest reference without a sheet prefix at the start of `text`: "R1C1", "RC[-1]",
/// "R1C1:R[2]C", "R3", "C[1]:C4". The parts that are not absolute are distances from the cell of
/// the formula, for which Moved() finds the places. std::nullopt as for ScanA1.
std::optional<A1Reference> ScanR1C1(std::u16string_view text, const R1C1Letters& letters);

/// The text of a reference whose relative parts are distances.
std::u16string R1C1Text(const A1Reference& distances, const R1C1Letters& letters);

}  // namespace formula
