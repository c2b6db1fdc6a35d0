#pragma once

#include <string>

#include "data/cell_columns.h"
#include "excel/or_failure.h"

namespace zavrel {

/// The name of a cell as a category: a text is its own name; a number or a boolean has the host's
/// text for it (General format; the word in the user's language). The name is empty for blank,
/// omitted and error cells. Hosts have a text for every number and boolean, so one that gives none
/// has met a fault: #VALUE!.
OrFailure<std::u16string> CategoryNameOf(const SingleValue& cell);

}  // namespace zavrel
