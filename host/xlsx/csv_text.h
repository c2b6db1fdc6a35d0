#pragma once
// Comma-separated text.

#include <cstdint>
#include <string_view>

#include "host/workbook/workbook.h"

namespace zavhost {

/// The text as a workbook of one sheet, as ReadCsv has it of a file. Throws WorkbookError for text
/// that cannot be used, and beyond `cells` values.
Workbook ParseCsv(std::string_view text, std::uint64_t cells);

}  // namespace zavhost
