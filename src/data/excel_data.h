#pragma once
// The data set of one data argument.

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "data/category_table.h"
#include "data/cell_columns.h"
#include "data/cell_layout.h"
#include "data/missing_data_policy.h"
#include "data/statistic_cache.h"
#include "excel/xxloper.h"
#include "platform/block_pool.h"
#include "stats/is_discrete.h"

namespace zavrel {

/// Classes of cells, as users number them. A cell belongs to several.
enum class CellClass { kEvery = 0, kNumber = 1, kNonBlank = 2, kNonBlankNonNumber = 3, kBlank = 4 };
inline constexpr std::int32_t kCellClasses = 5;

/// Numbers and integers are told apart: only the former count as numbers. Text is never parsed.
bool BelongsTo(CellTag tag, CellClass cell_class);

/// Cells in their argument's order (areas as given, each row by row), and everything that is worked
/// out from them: each acceptance result, each numeric shape and each statistic once, on first
/// request. Shared; the cells never change. A data set whose cells changed in Excel is replaced by
/// another.
class ExcelData {
 public:
  using SingleValue = zavrel::SingleValue;

  /// `left_out`: the blank cells outside the used parts of whole columns and rows, which are not
  /// among `cells`.
  ExcelData(std::string key, CellColumns cells, std::size_t left_out = 0, CellLayout layout = {});

  /// The text that the cache finds it by.
  const std::string& key() const { return key_; }
  /// Tells data sets apart, those included that are gone; never 0.
  std::uint64_t serial() const { return serial_; }
  const CellColumns& cells() const { return cells_; }
  std::size_t size() const { return cells_.size(); }
  SingleValue operator[](std::size_t index) const { return cells_[index]; }
  const CellLayout& layout() const { return layout_; }
  /// The block that the cells form; nothing where they form none.
  std::optional<CellBlock> block() const { return BlockOf(layout_, size()); }

  /// Of the whole argument: what was left out counts among the blank cells.
  std::size_t CountOfClass(CellClass cell_class) const;
  /// Cells that hold a number.
  std::size_t NumberCount() const { return cells_.count(CellTag::kNumber); }

  /// Whether a function with this policy accepts the cells: a nil value, or the error that the call
  /// must return. With `propagate_errors` the first error cell is that error (no worksheet function
  /// wants that yet).
  const XXloper& Acceptance(MissingDataPolicy policy, bool propagate_errors);

  /// The numbers in the policy's shape. A single omitted argument has none under any policy.
  std::span<const double> Numbers(MissingDataPolicy policy);

  /// The numbers without anything between them (as under kNumbersOnly), in ascending order.
  std::span<const double> SortedNumbers();
  /// The cells as categories; null when the host, which is asked for the names of numbers, wants
  /// the call to end.
  const CategoryTable* Categories();
  /// Whether the numbers look discrete.
  const IsDiscrete& Discreteness();

  StatisticCache& statistics() { return statistics_; }

  /// Memory that the data set holds at present.
  std::size_t bytes() const;

 private:
  // A numeric shape: where every cell is a number, the payloads themselves.
  using Shape = std::optional<BlockArray<double>>;

  bool IsOmitted() const { return size() == 1 && cells_.tag(0) == CellTag::kMissing; }
  XXloper CheckAcceptance(MissingDataPolicy policy, bool propagate_errors) const;
  BlockArray<double> NumbersOnly() const;
  BlockArray<double> Positional(bool with_errors) const;
  BlockArray<double> Sorted();

  inline static std::uint64_t made_ = 0;  // Excel's main thread only

  std::uint64_t serial_ = ++made_;
  std::string key_;
  CellColumns cells_;
  std::size_t left_out_;
  CellLayout layout_;
  std::array<std::array<std::optional<XXloper>, kMissingDataPolicies>, 2> acceptance_{};
  Shape positional_;
  Shape positional_with_errors_;
  Shape numbers_only_;
  Shape sorted_;
  std::optional<IsDiscrete> discreteness_;
  std::optional<CategoryTable> categories_;
  StatisticCache statistics_;
};

}  // namespace zavrel
