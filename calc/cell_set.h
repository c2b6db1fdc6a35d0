#pragma once

#include <cstdint>
#include <map>
#include <vector>

#include "calc/sheet_range.h"

namespace zavcalc {

/// Cells of one sheet: in each column, intervals of rows that do not overlap.
class CellSet {
 public:
  void Add(const SheetRange& cells);
  /// Call this when all have been added, before the first question.
  void Sort();

  bool Touches(const SheetRange& range) const;
  /// The parts that lie in the range.
  std::vector<SheetRange> Within(const SheetRange& range) const;

 private:
  struct Rows {
    std::int32_t first;
    std::int32_t last;
  };
  /// Calls `visit` with each part in the range, until it returns false.
  template <class Visit>
  void ForEachWithin(const SheetRange& range, const Visit& visit) const;

  std::map<std::int32_t, std::vector<Rows>> columns_;
};

}  // namespace zavcalc
