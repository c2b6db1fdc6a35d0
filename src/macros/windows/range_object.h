#pragma once
// Range objects of the host's automation, as a macro passes them.

#include <cstdint>
#include <optional>

#include "excel/xloper12.h"
#include "platform/windows/ole_owners.h"

namespace zavrel {

/// Cells of a sheet, by the C API's sheet id.
struct SheetArea {
  std::uint64_t sheet_id = 0;
  XLREF12 area{};
};

/// The cells of the range object in a macro's VARIANT; std::nullopt if it does not hold one, or one
/// with several areas.
std::optional<SheetArea> RangeIn(const VARIANT* designator);

/// The first cell of the range object in a macro's VARIANT, however many areas it has; std::nullopt
/// if it does not hold a range object.
std::optional<SheetArea> FirstCellIn(const VARIANT* designator);

}  // namespace zavrel
