#pragma once

#include <optional>
#include <string>

#include "data/cell_columns.h"

namespace zavrel {

/// The name of a cell as a category: a text is its own name; numbers and booleans are named by the
/// host's own text for them (General format, the user's word). Blank, omitted and error cells have
/// the empty name, and so has what the host cannot put into text. Nothing when the host wants the
/// call to end.
std::optional<std::u16string> CategoryNameOf(const SingleValue& cell);

}  // namespace zavrel
