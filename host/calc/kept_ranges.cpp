#include "host/calc/kept_ranges.h"

#include <algorithm>
#include <utility>

namespace zavhost {
namespace {

constexpr std::size_t kMostRanges = 16;
constexpr std::size_t kFewestCells = 256;
constexpr std::int32_t kMostColumns = 64;  // all are asked for changes
constexpr std::size_t kMostCells = 4'000'000;

}  // namespace

ArrayPtr KeptRanges::Find(std::uint32_t sheet_index, const Sheet& sheet, const CellRange& range) {
  const auto found = std::find_if(kept_.begin(), kept_.end(), [&](const Kept& kept) {
    return kept.sheet_index == sheet_index && kept.range == range;
  });
  if (found == kept_.end()) return nullptr;
  if (found->changes != sheet.changes(range.first_column, range.last_column)) {
    cells_ -= found->values->values.size();
    kept_.erase(found);
    return nullptr;
  }
  std::rotate(found, found + 1, kept_.end());
  return kept_.back().values;
}

void KeptRanges::Keep(std::uint32_t sheet_index, const Sheet& sheet, const CellRange& range,
                      ArrayPtr values) {
  const std::size_t size = values->values.size();
  if (size < kFewestCells || size > kMostCells || range.columns() > kMostColumns) return;
  cells_ += size;
  kept_.push_back({sheet_index, range, sheet.changes(range.first_column, range.last_column),
                   std::move(values)});
  while (kept_.size() > kMostRanges || cells_ > kMostCells) {
    cells_ -= kept_.front().values->values.size();
    kept_.erase(kept_.begin());
  }
}

}  // namespace zavhost
