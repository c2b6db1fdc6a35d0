#pragma once
// Where the rows and cells of a sheet part stand: each may name its place or follow the one before.

#include <cstdint>
#include <string>

#include "host/workbook/cell_names.h"
#include "host/xlsx/xml_reader.h"

namespace zavhost {

/// Follows the rows and cells of a sheet part. Both calls throw XmlError for a place that no sheet
/// has.
class SheetPositions {
 public:
  /// At the start of a row element: its row, zero-based.
  std::int32_t StartRow(const XmlReader& reader);
  /// At the start of a c element.
  CellPosition StartCell(const XmlReader& reader);

 private:
  std::int32_t row_ = -1;
  std::int32_t next_column_ = 0;
};

}  // namespace zavhost
