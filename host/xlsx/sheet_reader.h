#pragma once
// Reads one sheet part into the workbook.

#include <cstdint>
#include <vector>

#include "host/workbook/workbook.h"
#include "host/xlsx/kept_bytes.h"
#include "host/xlsx/xml_reader.h"

namespace zavhost {

/// The data that the sheets of one workbook share while they are read.
struct SheetReading {
  Workbook* workbook = nullptr;
  const std::vector<Text>* shared_strings = nullptr;
  const std::vector<bool>* dynamic_marks = nullptr;  // by the number of a cell's metadata
  std::uint64_t cells_left = 0;                      // of stored cells and cells of array formulas
  KeptBytes* kept = nullptr;
};

/// Reads from the beginning of the part: values, formulas, hidden rows, filter and protection of
/// sheet number `sheet`. Throws XmlError and WorkbookError.
void ReadSheet(XmlReader& reader, std::uint32_t sheet, SheetReading& reading);

}  // namespace zavhost
