#pragma once
// Large ranges that formulas read again and again.

#include <cstddef>
#include <cstdint>
#include <vector>

#include "host/workbook/workbook.h"

namespace zavhost {

/// The values of the last large ranges that were read, each only as long as none of its cells has
/// changed. Thousands of lookups in one table share one array, which is also what lets a lookup
/// index it.
class KeptRanges {
 public:
  /// The values of a range, or null.
  ArrayPtr Find(std::uint32_t sheet_index, const Sheet& sheet, const CellRange& range);
  void Keep(std::uint32_t sheet_index, const Sheet& sheet, const CellRange& range, ArrayPtr values);

 private:
  struct Kept {
    std::uint32_t sheet_index;
    CellRange range;
    std::uint64_t changes;  // of its columns when it was read
    ArrayPtr values;
  };

  std::vector<Kept> kept_;  // the last used one last
  std::size_t cells_ = 0;
};

}  // namespace zavhost
