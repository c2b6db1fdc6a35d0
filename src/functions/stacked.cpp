// Data sets from parts of ranges and from several ranges: ZavDestack, ZavMulti.
#include <optional>
#include <string>
#include <utility>

#include "data/data_argument.h"
#include "data/scalar_argument.h"
#include "data/session_caches.h"
#include "data/stacked_data.h"
#include "frame/worksheet_function.h"
#include "functions/put_cell.h"
#include "platform/export.h"

namespace zavrel {
namespace {

/// A category variable and the selected name; std::nullopt if either is left out or cannot be read.
std::optional<StackedSelection::Condition> ConditionOf(const XLOPER12* categories,
                                                       const XLOPER12* name) {
  if (IsOmitted(categories)) return std::nullopt;
  auto read = ReadText(name, Presence::kRequired);
  if (!read.ok()) return std::nullopt;
  auto kept = KeptArgument::Of(*categories);
  if (!kept) return std::nullopt;
  return StackedSelection::Condition{*std::move(kept), **std::move(read)};
}

std::optional<std::string> HandleOf(StackedSelection selection) {
  ExcelDataCache* cache = SessionExcelDataCache();
  if (cache == nullptr) return std::nullopt;
  return StackedHandle(cache->stacked_selections().IndexOf(std::move(selection)));
}

enum class Order { kHost = 0, kByColumns = 1 };

/// Collects the cells of areas, arrays and values, one after another.
class MultiRange {
 public:
  explicit MultiRange(Order order) : order_(order) {}

  /// Cells that cannot be read: #REF!. Too many cells, or cells without known columns in column
  /// order: #VALUE!.
  std::optional<Failure> Add(const XLOPER12& argument) {
    return ReadAreas(argument, [&](const auto& data) { return AddData(*data); });
  }

  /// All cells in one column; an empty value if there are none.
  XXloper Column() const {
    if (cells_.size() == 0) return XXloper::Nil();
    XXloperArray column(static_cast<std::int32_t>(cells_.size()), 1);
    for (std::size_t i = 0; i < cells_.size(); ++i) PutCell(column, i, cells_[i]);
    return std::move(column).Finish();
  }

 private:
  std::optional<Failure> AddData(const ExcelData& data) {
    const std::optional<CellBlock> block = data.block();
    const std::size_t count = UsedCells(data);
    if (count > kExcelRows - cells_.size()) return Failure(ExcelError::kValue);
    if (order_ == Order::kHost) {
      cells_.AppendPart(data.cells(), 0, count);
      return std::nullopt;
    }
    if (!block) return Failure(ExcelError::kValue);
    for (std::size_t column = 0; column < block->columns; ++column) {
      for (std::size_t i = column; i < count; i += block->columns)
        cells_.AppendPart(data.cells(), i, 1);
    }
    return std::nullopt;
  }

  /// The number of cells down to the last used row. If a function takes values, Excel passes whole
  /// columns as an array of all their cells; whole columns in a reference have already been cut.
  static std::size_t UsedCells(const ExcelData& data) {
    const CellLayout& layout = data.layout();
    std::size_t count = data.size();
    if (layout.kind != CellLayout::Kind::kComplete || layout.rows < kExcelRows) return count;
    while (count > 0 && data.cells().tag(count - 1) == CellTag::kBlank) --count;
    return (count + layout.columns - 1) / layout.columns * layout.columns;
  }

  Order order_;
  CellColumns cells_;
};

}  // namespace

/// The handle of a selection: the values of the rows that belong to a category, or to two. Every
/// function that takes data takes the handle in the place of a range and reads the data afresh.
/// Excel shows #NUM! if an argument is missing or cannot be read; the second variable and its name
/// must be given together. A function that gets a handle from an earlier session, or one of values
/// and categories that differ in shape, shows #REF!.
ZAV_EXPORT const char* ZavrelDestack(const XLOPER12* values, const XLOPER12* categories1,
                                     const XLOPER12* name1, const XLOPER12* categories2,
                                     const XLOPER12* name2) {
  return TextFunction("ZavrelDestack", [&]() -> std::optional<std::string> {
    // After the first that cannot be read nothing more is asked of the host.
    if (IsOmitted(values)) return std::nullopt;
    auto kept = KeptArgument::Of(*values);
    if (!kept) return std::nullopt;
    auto first = ConditionOf(categories1, name1);
    if (!first) return std::nullopt;
    const bool has_second = !IsOmitted(categories2) || !IsOmitted(name2);
    auto second = has_second ? ConditionOf(categories2, name2) : std::nullopt;
    if (has_second && !second) return std::nullopt;
    return HandleOf(StackedSelection{*std::move(kept), *std::move(first), std::move(second)});
  });
}

/// Several ranges as one data set, a column of all their cells: the areas of `range` as given, then
/// those of `more`, which may be a range, an array or the result of this function. `order` 0 takes
/// each area row by row, as Excel does, 1 column by column. Of whole columns and rows the used part
/// is taken (of a whole sheet only with order 0). Another order, no range, or more cells than a
/// sheet has rows: #VALUE!; cells that cannot be read: #REF!.
ZAV_EXPORT XLOPER12* ZavrelMultiRange(std::int16_t order, const XLOPER12* range,
                                      const XLOPER12* more) {
  return WorksheetFunction("ZavrelMultiRange", [&]() -> CellResult {
    const bool known_order = order == 0 || order == 1;
    if (!known_order || IsOmitted(range)) return Failure(ExcelError::kValue);
    MultiRange all(static_cast<Order>(order));
    if (const auto failure = all.Add(*range)) return *failure;
    if (IsOmitted(more)) return all.Column();
    if (const auto failure = all.Add(*more)) return *failure;
    return all.Column();
  });
}

}  // namespace zavrel
