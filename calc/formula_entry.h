#pragma once
// Enters formulas again, which has Calc read and calculate them anew. Neither counts as a change of
// the document: it is unmodified if it was before, and nothing can be undone.

#include "calc/uno_reference.h"

namespace zavcalc {

/// Enters every formula that calls a function of ours by its plain name, as programs write it that
/// do not know Excel's prefix: Calc does not find the function when it opens a file, but it does
/// when the formula is entered. Does nothing with a document that is no spreadsheet.
void EnterPlainNames(const UnoReference& model);

/// Enters the formulas with functions of ours that show an error, up to some hundreds.
void EnterErrors(const UnoReference& model);

}  // namespace zavcalc
