#pragma once
// References that are given as text while a formula is calculated.

#include <string_view>

#include "host/formula/evaluate.h"

namespace zavhost {

/// The reference that a text writes, as seen from the caller: cells, a defined name or a part of a
/// table. #REF! for everything else, also for a name that computes its reference.
Operand ReferenceFromText(std::u16string_view text, EvaluationContext& context);

/// The same for cells in R1C1 style: "R2C3", "R[-1]C:RC", "Sheet1!R1", "C[1]".
Operand ReferenceFromR1C1(std::u16string_view text, EvaluationContext& context);

}  // namespace zavhost
