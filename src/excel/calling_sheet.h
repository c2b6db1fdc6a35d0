#pragma once

#include <cstdint>
#include <optional>

#include "excel/or_failure.h"

namespace zavrel {

/// The id of the sheet that a reference without one is on: the calling formula's. No value when the
/// host does not tell.
///
/// Converting the reference to the kind that has a sheet gives the id in some hosts, although no
/// document says so; the sheet's name and the id of the sheet with that name work in the others.
/// Uncalculated when the host answers that the call has to end; it is asked nothing more then.
OrFailure<std::optional<std::uint64_t>> CallingSheetId(const XLOPER12& reference);
/// The first way alone; no value if the host does not convert.
OrFailure<std::optional<std::uint64_t>> ConvertedSheetId(const XLOPER12& reference);

}  // namespace zavrel
