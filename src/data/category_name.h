#pragma once

#include <optional>
#include <string>

#include "data/cell_columns.h"

namespace zavrel {

/// The name of a cell as a category: a text is its own name; a number or a boolean has the host's
/// text for it (General format; the word in the user's language). The name is empty for blank,
/// omitted and error cells, and for a value that the host cannot convert to text. std::nullopt if
/// the host wants the call to end.
std::optional<std::u16string> CategoryNameOf(const SingleValue& cell);

}  // namespace zavrel
