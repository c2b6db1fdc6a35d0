#pragma once
// The C API's view of the current calculation.

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
  /// True if the range contains a cell that is not calculated yet; the calculation remembers it.
  virtual bool MeetsUncalculated(std::uint32_t sheet, const CellRange& range) = 0;
  /// The cells of the formula that is being calculated; nothing outside a calculation.
  virtual std::optional<CallingCells> calling_cells() const = 0;
};

}  // namespace zavhost
