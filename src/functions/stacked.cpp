// Data sets made of parts of ranges and of several ranges: ZavDestack, ZavMulti.
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

/// A category variable and the name that is asked for; nothing when either is left out or cannot be
/// read.
std::optional<StackedSelection::Condition> ConditionOf(const XLOPER12* categories,
                                                       const XLOPER12* name) {
  if (IsOmitted(categories)) return std::nullopt;
  auto read = ReadText(name, Presence::kRequired);
  auto kept = KeptArgument::Of(*categories);
  if (!read.ok() || !kept) return std::nullopt;
  return StackedSelection::Condition{*std::move(kept), **std::move(read)};
}

std::optional<std::string> HandleOf(std::optional<StackedSelection> selection) {
  ExcelDataCache* cache = SessionExcelDataCache();
  if (!selection || cache == nullptr) return std::nullopt;
  return StackedHandle(cache->stacked_selections().IndexOf(*std::move(selection)));
}

enum class Order { kHost = 0, kByColumns = 1 };

/// The cells of one area, array or value after the others, each in its place.
class MultiRange {
 public:
  explicit MultiRange(Order order) : order_(order) {}

  /// Cells that cannot be read: #REF!; too many, or in columns that nobody can tell: #VALUE!.
  std::optional<Failure> Add(const XLOPER12& argument) {
    return ReadAreas(argument, [&](const auto& data) { return AddData(*data); });
  }

  /// One column; of no cells an empty value.
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

  /// Excel passes whole columns, where it is asked for values, as an array with all their cells: of
  /// that the rows down to the last used one. (As a reference they are read so.)
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
/// function that takes data takes it in the place of a range; there the data are read afresh.
/// Excel shows #NUM! when an argument is missing or cannot be read; the second variable and its
/// name go together. A handle from an earlier session: #REF! where it is used.
ZAV_EXPORT const char* ZavrelDestack(const XLOPER12* values, const XLOPER12* categories1,
                                     const XLOPER12* name1, const XLOPER12* categories2,
                                     const XLOPER12* name2) {
  return TextFunction("ZavrelDestack", [&]() -> std::optional<std::string> {
    if (IsOmitted(values)) return std::nullopt;
    auto kept = KeptArgument::Of(*values);
    auto first = ConditionOf(categories1, name1);
    const bool has_second = !IsOmitted(categories2) || !IsOmitted(name2);
    auto second = has_second ? ConditionOf(categories2, name2) : std::nullopt;
    if (!kept || !first || (has_second && !second)) return std::nullopt;
    return HandleOf(StackedSelection{*std::move(kept), *std::move(first), std::move(second)});
  });
}

/// Several ranges as one data set, a column of all their cells: the areas of `range` as given, then
/// `more`, a further range, an array or the result of this function. `order` 0 takes each area row
/// by row, as Excel does, 1 column by column. Of whole columns and rows the used part is taken (of
/// a whole sheet by order 0 only). Anything else, and more cells than a sheet has rows: #VALUE!;
/// cells that cannot be read: #REF!.
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
