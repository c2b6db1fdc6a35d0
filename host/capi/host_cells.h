#pragma once
// What the C API asks of the calculation that stands behind it.

#include <cstdint>
#include <optional>

#include "host/workbook/workbook.h"

namespace zavhost {

struct CallingCells {
  std::uint32_t sheet = 0;
  CellRange range;
};

class HostCells {
 public:
  virtual ~HostCells() = default;
  virtual Workbook& cells_workbook() = 0;
  /// True when the range holds a cell that waits to be calculated; the calculation remembers it.
  virtual bool MeetsUncalculated(std::uint32_t sheet, const CellRange& range) = 0;
  /// The cells whose formula is being calculated; nothing outside a calculation.
  virtual std::optional<CallingCells> calling_cells() const = 0;
};

}  // namespace zavhost
