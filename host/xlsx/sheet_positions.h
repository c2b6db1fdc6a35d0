#pragma once
// The positions of rows and cells in a sheet part: each either names its position or follows the
// previous one.

#include <cstdint>
#include <string>

#include "host/workbook/cell_names.h"
#include "host/xlsx/xml_reader.h"

namespace zavhost {

/// Tracks the rows and cells of a sheet part. Both calls throw XmlError for a position outside a
/// sheet.
class SheetPositions {
 public:
  /// At the start of a row element: its zero-based row.
  std::int32_t StartRow(const XmlReader& reader);
  /// At the start of a c element.
  CellPosition StartCell(const XmlReader& reader);

 private:
  std::int32_t row_ = -1;
  std::int32_t next_column_ = 0;
};

}  // namespace zavhost
