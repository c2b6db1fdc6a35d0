#pragma once
// The categories of a data set.

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "data/cell_columns.h"
#include "excel/or_failure.h"
#include "platform/block_pool.h"

namespace zavrel {

/// A category's name as users write it: without white space at both ends, with spaces for line
/// breaks.
std::u16string CleanedCategoryName(std::u16string_view name);
/// The key that all spellings of a category's name share: the cleaned name in lower case.
std::u16string CategoryKey(std::u16string_view name);

struct Category {
  /// The cleaned name of its first cell.
  std::u16string name;
  /// The positions of its cells in the data set, from 0, ascending.
  std::span<const std::int32_t> positions{};
};

/// The categories of a data set's cells, in the order in which they first occur. Cells with the
/// same key belong to the same category; a cell whose name is empty (blank, omitted, error, only
/// white space) belongs to none. Built in one pass over the cells, without an allocation per cell.
class CategoryTable {
 public:
  /// A failure to name one cell is the table's: what lacks cells is no table.
  static OrFailure<CategoryTable> Of(const CellColumns& cells);

  CategoryTable(CategoryTable&&) noexcept = default;

  std::size_t size() const { return categories_.size(); }
  /// The category that a name stands for, in any of its spellings; null if there is none.
  const Category* Find(std::u16string_view name) const;
  /// The names in ascending order of code units: capitals before small letters, 10 before 9.
  std::span<const std::u16string_view> SortedNames() const;

  std::size_t bytes() const;

 private:
  friend class CategoryTableBuilder;
  CategoryTable() = default;

  std::vector<Category> categories_;
  std::unordered_map<std::u16string, std::size_t> by_key_;
  mutable std::vector<std::u16string_view> sorted_names_;  // once they are asked for
  BlockArray<std::int32_t> positions_;
};

}  // namespace zavrel
