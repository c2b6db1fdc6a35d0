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
#include "excel/or_failure.h"
#include "excel/xxloper.h"
#include "platform/block_pool.h"
#include "stats/is_discrete.h"

namespace zavrel {

/// Classes of cells, by the numbers that users give. A cell belongs to several.
enum class CellClass { kEvery = 0, kNumber = 1, kNonBlank = 2, kNonBlankNonNumber = 3, kBlank = 4 };
inline constexpr std::int32_t kCellClasses = 5;

/// CellTag::kInteger does not count as a number, and text is never parsed.
bool BelongsTo(CellTag tag, CellClass cell_class);

/// The cells of an argument in its order (areas as given, each row by row), and everything computed
/// from them: each acceptance result, each numeric shape and each statistic, once, on first
/// request. Shared; the cells never change. If they change in Excel, another data set replaces this
/// one.
class ExcelData {
 public:
  using SingleValue = zavrel::SingleValue;

  ExcelData(std::string key, CellColumns cells, CellLayout layout = {});

  /// The text under which the cache finds the data set.
  const std::string& key() const { return key_; }
  /// Unique among all data sets ever made; never 0.
  std::uint64_t serial() const { return serial_; }
  const CellColumns& cells() const { return cells_; }
  std::size_t size() const { return cells_.size(); }
  SingleValue operator[](std::size_t index) const { return cells_[index]; }
  const CellLayout& layout() const { return layout_; }
  /// The block that the cells form; std::nullopt if they do not form one.
  std::optional<CellBlock> block() const { return BlockOf(layout_, size()); }

  std::size_t CountOfClass(CellClass cell_class) const;
  /// The number of cells that hold a number.
  std::size_t NumberCount() const { return cells_.count(CellTag::kNumber); }

  /// A nil value if a function with this policy accepts the cells, else the error that the call
  /// must return. With `propagate_errors` this is the error of the first error cell, if there is
  /// one (no worksheet function uses that yet).
  const XXloper& Acceptance(MissingDataPolicy policy, bool propagate_errors);

  /// The numbers in the policy's shape. A single omitted argument has none under any policy.
  std::span<const double> Numbers(MissingDataPolicy policy);

  /// The numbers alone (as under kNumbersOnly), in ascending order.
  std::span<const double> SortedNumbers();
  /// The categories of the cells, or the failure to name one of these, which nothing remembers.
  OrFailure<const CategoryTable*> Categories();
  /// Whether the numbers look discrete.
  const IsDiscrete& Discreteness();

  StatisticCache& statistics() { return statistics_; }

  /// Bytes that the data set holds at present.
  std::size_t bytes() const;

 private:
  // A numeric shape, once requested. If every cell is a number, the payloads serve instead of all
  // but the sorted one.
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
