#pragma once

#include <optional>
#include <string>

#include "data/argument_piece.h"
#include "data/sheet_ids.h"

namespace zavrel {

/// The key text of a data set: for a reference its sheet and areas, for an array or a value its
/// rows, its columns and a fingerprint of its content. Different arguments of the same shape may in
/// principle share a key, so a data set found by its key is always compared with the argument's
/// cells.
///
/// std::nullopt if the host, asked for the calling sheet, wants the call to return at once.
std::optional<std::string> DataKey(Pieces pieces, SheetIds& sheet_ids);

}  // namespace zavrel
