#pragma once
// Plain names of our functions, as programs write them that do not know Excel's prefix: Calc does
// not find them when it opens a file.

#include "calc/uno.h"

namespace zavcalc {

/// Enters every formula again that calls a function by its plain name, so that Calc finds the
/// function. The document counts as unmodified if it did before: opened again, it gives the same.
/// Does nothing with a document that is no spreadsheet.
void ResolveNames(uno_Interface* model);

}  // namespace zavcalc
