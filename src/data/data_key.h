#pragma once

#include <optional>
#include <span>
#include <string>

#include "excel/xloper12.h"

namespace zavrel {

/// The key text of a data set: for a reference its sheet and areas, for an array or a value its
/// size and a fingerprint of its content. Different arguments may in principle share a key, so what
/// is found under one is always compared with the argument's cells. No piece is null.
///
/// Nothing when the host, asked for the calling sheet, wants the call to return at once.
std::optional<std::string> DataKey(std::span<const XLOPER12* const> pieces);

}  // namespace zavrel
