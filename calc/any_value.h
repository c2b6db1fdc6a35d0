#pragma once
// Converts Calc's values to operands of the host, and back.

#include "calc/uno.h"
#include "host/workbook/value.h"

namespace zavcalc {

/// What an argument of a call holds: a number, a text, an array of them, or nothing if the formula
/// left it out. Calc passes blank cells of a range and empty texts alike, as "": they arrive as
/// blank.
zavhost::Operand ToOperand(const uno_Any& argument);
/// The array of these rows, which have one length; #VALUE! if there is none.
zavhost::Operand ToArray(uno_Sequence* sequence);

/// Constructs the result of a call. An error is a number with Calc's own code for it in its bits; a
/// boolean is 1 or 0, since Calc shows a boolean of an add-in as 0.
void ConstructResult(uno_Any& result, const zavhost::Operand& operand);

}  // namespace zavcalc
