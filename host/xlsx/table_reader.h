#pragma once
// Reads the part of a table.

#include <cstdint>
#include <optional>
#include <string_view>

#include "host/workbook/workbook.h"

namespace zavhost {

/// The table on sheet number `sheet`, with the range of its filter in `filter` if it has one.
/// Throws XmlError.
Table ReadTable(std::string_view xml, std::uint32_t sheet, std::optional<CellRange>& filter);

}  // namespace zavhost
